// The reader in Python, which was written from docs/archive.md alone, against the library: both must
// find the same in every golden file.  Where they differ, the document is wrong, or one of them is.
#include <archive/golden_cases.h>
#include <gtest/gtest.h>
#include <support/source_folder.h>

#include <array>
#include <cstdio>
#include <map>
#include <sstream>

using archive_test::Bytes;

namespace {

std::string reader() {
  return "python3 '" + sourceFolder() +
         "/tools/read_archive.py' --class archive_test::ShapeList=handles ";
}

struct Result {
  std::string out;
  int status = 0;
};

Result run(const std::string& command) {
  Result result;
  std::FILE* const pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
  std::array<char, 65536> piece{};
  for (std::size_t got = 1; got != 0;) {
    got = std::fread(piece.data(), 1, piece.size(), pipe);
    result.out.append(piece.data(), got);
  }
  result.status = ::pclose(pipe);
  return result;
}

}  // namespace

TEST(ArchiveReader, FindsWhatTheLibraryFindsInEveryGoldenFile) {
  std::string command = reader() + "--flat";
  std::map<std::string, std::string> wanted;
  for (const archive_test::GoldenCase& one : archive_test::goldenCases()) {
    const std::string path = (archive_test::goldenFolder() / (one.name + ".gxa")).string();
    command += " '" + path + "'";
    const Bytes bytes = archive_test::goldenBytes(one.name);
    gxArchive archive(bytes);
    wanted[path] = archive_test::describe(*archive.loadNew());
  }
  const Result result = run(command);
  EXPECT_EQ(result.status, 0);
  std::istringstream lines(result.out);
  std::size_t found = 0;
  for (std::string line; std::getline(lines, line); ++found) {
    const std::size_t space = line.find(' ');
    ASSERT_TRUE(wanted.contains(line.substr(0, space))) << line.substr(0, 100);
    EXPECT_TRUE(line.substr(space + 1) + ' ' == wanted[line.substr(0, space)])
        << line.substr(0, 300) << "\n"
        << wanted[line.substr(0, space)].substr(0, 300);
  }
  EXPECT_EQ(found, wanted.size());
}

TEST(ArchiveReader, ListsWhatTheDocumentShows) {
  // The dumps in docs/archive.md are what the reader prints; this keeps them true.
  std::ifstream file(sourceFolder() + "/docs/archive.md");
  const std::string document((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  const std::string mark = "$ tools/read_archive.py --bytes ";
  std::size_t dumps = 0;
  for (std::size_t at = document.find(mark); at != std::string::npos; at = document.find(mark, at + 1)) {
    const std::size_t lineEnd = document.find('\n', at);
    const std::string path = document.substr(at + mark.size(), lineEnd - at - mark.size());
    const std::size_t end = document.find("\n```", lineEnd);
    const std::string shown = document.substr(lineEnd + 1, end - lineEnd);
    const Result result = run("cd '" + sourceFolder() + "' && " + reader() + "--bytes " + path);
    EXPECT_EQ(result.out, shown);
    ++dumps;
  }
  EXPECT_GE(dumps, 3U);
}
