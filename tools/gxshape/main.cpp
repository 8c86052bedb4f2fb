// gxshape: the command line.  One table says what every command is; help, man page and completion are made
// of it.  The only file that includes CLI11, which takes its time to compile.
#include "command.h"
#include "names.h"
#include "run.h"

#include "row.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <functional>
#include <iostream>

namespace {

constexpr const char* kUsage =
    "usage: gxshape COMMAND [OPTIONS] [FILE...]        one record in, one answer out\n"
    "\n"
    "  measure    area, length, centre, box            check      what is wrong, and where\n"
    "  describe   circularity, Feret, moments, ...     repair     valid regions, by rule\n"
    "  inside     inside, border or outside            union  clip  offset  simplify\n"
    "  closest    nearest point of the border          compare    deviation from a golden outline\n"
    "  distance   between shapes                       form       roundness, straightness, ...\n"
    "  intersect  crossings with a line or shape       draw       SVG, PNG, PDF\n"
    "  hull       convex hull                          convert    one format to another\n"
    "  fit        line, circle, ellipse                info       what a file holds\n"
    "\n"
    "Try:  echo 'POLYGON ((0 0, 40 0, 40 30, 0 30))' | gxshape measure\n"
    "      gxshape COMMAND --help    gxshape --list    man gxshape\n";

struct About {
  const char* name;
  const char* what;
  const char* example;
  std::function<void(CLI::App&, Options&)> own;
};

const std::vector<About>& commands() {
  static const std::vector<About> all = {
      {"measure", "area, length, centre and box; holes counted.",
       "gxshape measure --only area,centre parts.wkt",
       [](CLI::App& app, Options& o) { app.add_flag("--outline", o.outlineOnly, "leave holes out"); }},
      {"describe", "descriptors, widths, circle, rectangle, moments.",
       "gxshape describe --only circularity,solidity parts.wkt",
       [](CLI::App& app, Options& o) {
         app.add_flag("--all", o.all, "also what takes longer: inscribed circle, wall, defects");
       }},
      {"inside", "where points lie.", "gxshape inside --at 30,15 parts.wkt",
       [](CLI::App& app, Options& o) {
         app.add_option("--at", o.at, "one point X,Y (may be repeated)")
             ->allow_extra_args(false)
             ->type_name("X,Y");
         app.add_option("--points", o.pointsFile,
                        "a file of points: one answer a point, with its region")
             ->type_name("FILE");
         app.add_option("--within", o.within, "border when D or nearer [0]")->type_name("D");
       }},
      {"closest", "the nearest point of the border.", "gxshape closest --at 30,12 parts.wkt",
       [](CLI::App& app, Options& o) {
         app.add_option("--at", o.at, "one point X,Y (may be repeated)")
             ->allow_extra_args(false)
             ->type_name("X,Y");
         app.add_option("--points", o.pointsFile, "a file of points: one answer a point")
             ->type_name("FILE");
       }},
      {"distance", "how far from another shape, and between which places.",
       "gxshape distance --with bow.wkt parts.wkt",
       [](CLI::App& app, Options& o) {
         app.add_option("--with", o.withFile, "the other shape, the first record of FILE")
             ->type_name("FILE");
       }},
      {"intersect", "crossings of borders with a line or another shape.",
       "gxshape intersect --line 0,5,60,5 parts.wkt",
       [](CLI::App& app, Options& o) {
         app.add_option("--line", o.line, "a segment X,Y,X,Y")->type_name("X,Y,X,Y");
         app.add_option("--with", o.withFile, "the other shape, the first record of FILE")
             ->type_name("FILE");
       }},
      {"hull", "the convex hull.", "gxshape hull parts.wkt", [](CLI::App&, Options&) {}},
      {"fit", "a line, a circle or an ellipse through the points.",
       "gxshape fit --kind circle parts.wkt",
       [](CLI::App& app, Options& o) {
         app.add_option("--kind", o.kind, "line, circle or ellipse [circle]")->type_name("KIND");
         app.add_option("--weights", o.weights,
                        "least-squares, huber, tukey or consensus [least-squares]")
             ->type_name("WORD");
       }},
      {"check", "problems with kind, place and edges; exit 1 if any.", "gxshape check --max 10 bow.wkt",
       [](CLI::App& app, Options& o) {
         app.add_option("--max", o.max, "stop after N problems a record [100]")
             ->check(CLI::NonNegativeNumber)
             ->type_name("N");
       }},
      {"repair", "valid regions by rule.", "gxshape repair --rule even-odd bow.wkt",
       [](CLI::App& app, Options& o) {
         app.add_option("--rule", o.rule, "even-odd, non-zero, positive or outer [even-odd]")
             ->type_name("RULE");
         app.add_flag("--report", o.report,
                      "areas, dropped rings and the largest move instead of shapes");
       }},
      {"union", "all records as one, or each with those of a file.", "gxshape union bars.wkt",
       [](CLI::App& app, Options& o) {
         app.add_option("--with", o.withFile, "join each record with all of FILE")->type_name("FILE");
         app.add_option("--rule", o.rule, "even-odd, non-zero, positive or outer [even-odd]")
             ->type_name("RULE");
       }},
      {"clip", "what lies in a box or in the shapes of a file.",
       "gxshape clip --box 0,0,20,20 parts.wkt",
       [](CLI::App& app, Options& o) {
         app.add_option("--box", o.box, "corners X,Y,X,Y")->type_name("X,Y,X,Y");
         app.add_option("--with", o.withFile, "the shapes of FILE together")->type_name("FILE");
         app.add_option("--operation", o.operation,
                        "intersection, difference or symmetric-difference [intersection]")
             ->type_name("WORD");
         app.add_option("--rule", o.rule, "even-odd, non-zero, positive or outer [even-odd]")
             ->type_name("RULE");
       }},
      {"offset", "grown or shrunk shapes.", "gxshape offset --by 1 --join mitre parts.wkt",
       [](CLI::App& app, Options& o) {
         app.add_option("--by", o.by, "how far; below 0 shrinks")->type_name("D");
         app.add_option("--join", o.join, "round, mitre or bevel [round]")->type_name("WORD");
         app.add_option("--ends", o.ends, "of open contours: round, flat or square [round]")
             ->type_name("WORD");
         app.add_option("--tolerance", o.tolerance, "of round joins [the library's]")->type_name("D");
       }},
      {"simplify", "fewer points within a tolerance.", "gxshape simplify --tolerance 0.5 parts.wkt",
       [](CLI::App& app, Options& o) {
         app.add_option("--tolerance", o.tolerance, "the farthest that a left-out point may lie")
             ->type_name("D");
         app.add_flag("--keep-apart", o.keepApart, "make no edges cross that did not");
       }},
      {"compare", "deviation from a golden outline; exit 1 beyond --max.",
       "gxshape compare --golden bow.wkt --max 100 parts.wkt",
       [](CLI::App& app, Options& o) {
         app.add_option("--golden", o.golden, "the outline that is right, the first record of FILE")
             ->type_name("FILE");
         app.add_option("--max", o.max, "the largest distance that is within")->type_name("D");
         app.add_option("--align", o.align, "lay each upon it first: none, rigid or similarity [none]")
             ->type_name("WORD");
         app.add_flag("--all", o.all, "also what takes longer: the Fréchet distance");
         app.add_option("--step", o.step, "sample edges every D, not at vertices alone")->type_name("D");
       }},
      {"form", "form errors of points; exit 1 beyond --max.",
       "gxshape form --kind roundness --reference minimum-zone parts.wkt",
       [](CLI::App& app, Options& o) {
         app.add_option("--kind", o.kind, "roundness, straightness, parallelism, flat-angle or profile")
             ->type_name("KIND");
         app.add_option("--reference", o.reference,
                        "least-squares, minimum-zone, circumscribed or inscribed [minimum-zone; of "
                        "flat-angle least-squares]")
             ->type_name("WORD");
         app.add_option("--datum", o.datum, "the straight feature that others are parallel to")
             ->type_name("FILE");
         app.add_option("--golden", o.golden, "the nominal outline of a profile")->type_name("FILE");
         app.add_option("--align", o.align, "of a profile: none or rigid [none]")->type_name("WORD");
         app.add_option("--max", o.max, "the largest error that is within")->type_name("D");
       }},
      {"draw", "a picture of all records.", "gxshape draw --layers fill,outline,hull,axes parts.wkt",
       [](CLI::App& app, Options& o) {
         app.add_option(
                "--layers", o.layers,
                "fill, outline, points, ids, box, hull, circle, inscribed, rectangle, ellipse, axes, "
                "feret, crossings, problems, repair, deviation [fill,outline]")
             ->type_name("WORDS");
         app.add_option("--golden", o.golden, "the outline for the layer deviation")->type_name("FILE");
         app.add_option("--max", o.max, "the deviation with the strongest colour [the largest]")
             ->check(CLI::PositiveNumber)
             ->type_name("D");
         app.add_option("--rule", o.rule,
                        "of the layer repair: even-odd, non-zero, positive or outer [even-odd]")
             ->type_name("RULE");
         app.add_option("--behind", o.behind,
                        "a picture behind: PNG, PGM or PPM, pixel centres at whole numbers")
             ->type_name("FILE");
         app.add_option("--y", o.y, "where y points: down, as in images, or up [down]")
             ->type_name("WORD");
         app.add_option("--view", o.view, "corners of what is shown, X,Y,X,Y [all]")
             ->type_name("X,Y,X,Y");
         app.add_option("--size", o.size, "pixels of the longer side [800]")
             ->check(CLI::Range(16.0, 20000.0))
             ->type_name("N");
         app.add_option("--scale-bar", o.scaleBar, "a bar with a length in UNIT")->type_name("UNIT");
       }},
      {"convert", "one format to another.", "gxshape convert -o geojson parts.wkt",
       [](CLI::App&, Options&) {}},
      {"info", "what a file holds.", "gxshape info parts.wkt", [](CLI::App&, Options&) {}},
  };
  return all;
}

// Words of options that the parser keeps as text.
struct Words {
  std::string format, only, onError = "emit", log = "text";
};

void addOptionsOfAll(CLI::App& app, Options& o, Words& words) {
  app.add_option("-f,--format", words.format,
                 "of the input: wkt, wkb, geojson, jsonl, csv, ragged, npz or gxa [by content]")
      ->type_name("NAME");
  app.add_option("-o,--output", o.output,
                 "table, jsonl or csv; of shapes wkt, wkb, geojson, jsonl, csv, ragged, npz or gxa")
      ->type_name("NAME");
  app.add_option("--to", o.to, "write to FILE, which appears when all is written")->type_name("FILE");
  app.add_option("--only", words.only, "these columns, in this order")->type_name("NAMES");
  app.add_option("--select", o.select, "records for which EXPR holds: 'area>=10 and holes=0'")
      ->type_name("EXPR");
  app.add_option("--limit", o.limit, "stop after N answers")
      ->check(CLI::NonNegativeNumber)
      ->type_name("N");
  app.add_option("--skip", o.skip, "pass over the first N records")
      ->check(CLI::NonNegativeNumber)
      ->type_name("N");
  app.add_option("--id", o.idField, "the member or property that holds the id")->type_name("FIELD");
  app.add_option("-j,--jobs", o.jobs, "threads [all cores]")->check(CLI::Range(1, 1024))->type_name("N");
  app.add_option("--on-error", words.onError, "of a record: emit, skip or fail [emit]")
      ->type_name("WORD");
  app.add_option("--log", words.log, "errors as text or jsonl [text]")->type_name("WORD");
  app.add_flag("--lines", o.lines, "one line out for every line in, at once");
  app.add_flag("--stats", o.stats, "count, least, mean and greatest at the end, on stderr");
  app.add_flag("--time", o.time, "records and seconds at the end, on stderr");
  app.add_flag("--degrees", o.degrees, "angles in degrees");
  app.add_option("--max-record", o.limits.recordBytes, "the most bytes of a record [67108864]")
      ->check(CLI::NonNegativeNumber)
      ->type_name("N");
  app.add_option("--max-nesting", o.limits.nesting, "the deepest nesting in JSON [64]")
      ->check(CLI::Range(1, 10000))
      ->type_name("N");
  app.add_flag("-q,--quiet", o.quiet, "no warnings, no progress");
  app.add_option("files", o.files, "input; - or none is standard input")->type_name("FILE");
}

void settle(Options& o, const Words& words) {
  if (!words.format.empty()) {
    o.format = gfFormatOf(words.format);
    if (o.format == gxFormat::eUnknown) {
      throw UsageError{"--format: wkt, wkb, geojson, jsonl, csv, ragged, npz or gxa, not '" +
                       words.format + "'"};
    }
  }
  for (std::size_t at = 0; at < words.only.size();) {
    const std::size_t comma = (std::min)(words.only.find(',', at), words.only.size());
    std::string name = words.only.substr(at, comma - at);
    std::replace(name.begin(), name.end(), '-', '_');
    o.only.push_back(name);
    at = comma + 1;
  }
  if (words.onError == "skip")
    o.onError = OnError::eSkip;
  else if (words.onError == "fail")
    o.onError = OnError::eFail;
  else if (words.onError != "emit")
    throw UsageError{"--on-error: emit, skip or fail, not '" + words.onError + "'"};
  if (words.log != "text" && words.log != "jsonl")
    throw UsageError{"--log: text or jsonl, not '" + words.log + "'"};
  o.logJsonl = words.log == "jsonl";
  if (o.lines && o.output.empty()) o.output = "jsonl";
  if (o.lines && o.output != "jsonl") throw UsageError{"--lines: answers are jsonl, not " + o.output};
  if (o.lines && o.command == "draw") throw UsageError{"--lines: draw makes one picture of all records"};
  if (o.lines && o.command == "union" && o.withFile.empty())
    throw UsageError{"--lines: union joins all records, which are no lines"};
}

// ---- Help, man page, completion ------------------------------------------------------------------------------

std::string optionNames(const CLI::Option& option) {
  std::string names;
  for (const auto& name : option.get_snames()) names += "-" + name + ", ";
  for (const auto& name : option.get_lnames()) names += "--" + name + ", ";
  if (names.empty()) return {};
  names.resize(names.size() - 2);
  if (option.get_type_size() == 0) return names;
  const std::string type = option.get_type_name();  // "N", or "N:INT in [1 - 1024]" where it is checked
  return names + ' ' + type.substr(0, type.find(':'));
}

// The options of a command, its own first, then those of all.
void listOptions(const CLI::App& app, std::size_t ofAll,
                 const std::function<void(const std::string&, const std::string&)>& tell) {
  std::vector<const CLI::Option*> options =
      app.get_options([](const CLI::Option* option) { return !option->get_positional(); });
  std::rotate(options.begin(), options.begin() + static_cast<std::ptrdiff_t>(ofAll), options.end());
  for (const auto* option : options) {
    const std::string names = optionNames(*option);
    if (!names.empty()) tell(names, option->get_description());
  }
}

std::string helpOf(const About& about, const CLI::App& app, std::size_t ofAll) {
  std::string text =
      "gxshape " + std::string(about.name) + " - " + about.what + "\n\n  e.g. " + about.example + "\n\n";
  listOptions(app, ofAll, [&](const std::string& names, const std::string& what) {
    text += "  " + names + std::string(names.size() < 22 ? 22 - names.size() : 1, ' ') + what + '\n';
  });
  return text;
}

std::string escaped(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == '-') out += '\\';
    if (c == '\\')
      out += "\\e";
    else
      out += c;
  }
  return out[0] == '\'' || out[0] == '.' ? "\\&" + out : out;
}

using Apps = std::vector<std::pair<const About*, const CLI::App*>>;

void printMan(const Apps& apps, std::size_t ofAll) {
  std::cout << ".TH GXSHAPE 1 \"\" \"gxshape " GXSHAPE_VERSION
               "\" \"User Commands\"\n.SH NAME\ngxshape \\- shapes in files: measures, "
               "repairs, comparisons\n.SH SYNOPSIS\n.B gxshape\n.I COMMAND\n[\\fIOPTIONS\\fR] "
               "[\\fIFILE\\fR...]\n.SH DESCRIPTION\nReads "
               "shapes from files or standard input, and answers one record with one row or one shape, "
               "in order. Formats are told by "
               "content. Answers go to standard output, everything said to a person to standard "
               "error.\n.SH COMMANDS\n";
  for (const auto& [about, app] : apps) {
    std::cout << ".TP\n.B " << about->name << "\n"
              << escaped(about->what) << "\n.br\n.I " << escaped(about->example) << '\n';
    std::size_t left =
        app->get_options([](const CLI::Option* option) { return !option->get_positional(); }).size() -
        ofAll;
    listOptions(*app, ofAll, [&](const std::string& names, const std::string& what) {
      if (left == 0) return;
      --left;
      std::cout << ".br\n\\fB" << escaped(names) << "\\fR: " << escaped(what) << '\n';
    });
  }
  std::cout << ".SH OPTIONS OF ALL COMMANDS\n";
  const CLI::App& any = *apps.back().second;
  listOptions(any, ofAll, [](const std::string& names, const std::string& what) {
    std::cout << ".TP\n.B " << escaped(names) << '\n' << escaped(what) << '\n';
  });
  std::cout << ".SH EXIT STATUS\n0: all answered. 1: a record failed, or was found wanting. 2: the "
               "command line is wrong. 3: a file "
               "cannot be read or written, or is of no known format. 130: interrupted.\n";
}

void printCompletion(const Apps& apps, std::size_t ofAll) {
  std::cout << "# bash completion for gxshape\n_gxshape() {\n  local word=${COMP_WORDS[COMP_CWORD]}\n  "
               "local words\n"
               "  case ${COMP_WORDS[1]} in\n";
  std::string names;
  for (const auto& [about, app] : apps) {
    names += std::string(about->name) + ' ';
    std::cout << "    " << about->name << ") words='";
    listOptions(*app, ofAll, [](const std::string& option, const std::string&) {
      const std::size_t at = option.find("--");
      if (at != std::string::npos) std::cout << option.substr(at, option.find(' ', at) - at) << ' ';
    });
    std::cout << "' ;;\n";
  }
  std::cout << "  esac\n  if [ \"$COMP_CWORD\" = 1 ]; then\n    COMPREPLY=($(compgen -W '" << names
            << "--help --list --version' -- \"$word\"))\n  elif [ \"${word#-}\" != \"$word\" ]; then\n"
               "    COMPREPLY=($(compgen -W \"$words\" -- \"$word\"))\n  else\n    COMPREPLY=($(compgen "
               "-f -- \"$word\"))\n  fi\n}\n"
               "complete -o filenames -F _gxshape gxshape\n";
}

int wrongUsage(const std::string& command, const std::string& text) {
  std::cerr << "gxshape" << (command.empty() ? "" : " " + command) << ": " << text << "; see gxshape"
            << (command.empty() ? "" : " " + command) << " --help\n";
  return 2;
}

// What is not known, with what may have been meant.
std::string unknownText(const std::string& word, const CLI::App& app) {
  std::vector<std::string> names;
  for (const auto* option : app.get_options()) {
    for (const auto& name : option->get_lnames()) names.push_back("--" + name);
  }
  const std::string near = nearest(word.substr(0, word.find('=')), names);
  return "no option '" + word + "'" + (near.empty() ? "" : "; did you mean '" + near + "'?");
}

// How many numbers an option takes by the name of their type, "X,Y": 0 for a flag, and where there is no option.
std::ptrdiff_t numbersOfOption(const CLI::App& app, const std::string& name) {
  const CLI::Option* option = app.get_option_no_throw(name);
  if (option == nullptr || option->get_items_expected_max() == 0) return 0;
  const std::string type = option->get_type_name();
  return 1 + std::count(type.begin(), type.end(), ',');
}

class CommandLine {
 public:
  explicit CommandLine(const About& about) : about_(about), app_(about.what, about.name) {
    app_.set_help_flag("-h,--help", "this text");
    addOptionsOfAll(app_, options_, words_);
    ofAll_ =
        app_.get_options([](const CLI::Option* option) { return !option->get_positional(); }).size();
    about.own(app_, options_);
  }
  const CLI::App& app() const { return app_; }
  std::size_t ofAll() const { return ofAll_; }

  int run(std::vector<std::string> words) {
    options_.command = about_.name;
    words = withNumbersBehindDashes(
        words, [this](const std::string& option) { return numbersOfOption(app_, option); });
    std::reverse(words.begin(), words.end());
    try {
      app_.parse(words);
    } catch (const CLI::CallForHelp&) {
      std::cout << helpOf(about_, app_, ofAll_);
      return 0;
    } catch (const CLI::ExtrasError&) {
      const auto rest = app_.remaining();
      return wrongUsage(about_.name, unknownText(rest.empty() ? "" : rest.front(), app_));
    } catch (const CLI::ParseError& error) {
      return wrongUsage(about_.name, error.what());
    }
    try {
      settle(options_, words_);
      return options_.command == "info" ? runInfo(options_) : runCommand(options_);
    } catch (const UsageError& error) {
      return wrongUsage(about_.name, error.text);
    }
  }

 private:
  const About& about_;
  CLI::App app_;
  Options options_;
  Words words_;
  std::size_t ofAll_ = 0;
};

int printOfAll(const std::string& what) {
  std::vector<std::unique_ptr<CommandLine>> lines;
  Apps apps;
  for (const auto& about : commands()) {
    lines.push_back(std::make_unique<CommandLine>(about));
    apps.emplace_back(&about, &lines.back()->app());
  }
  if (what == "--man")
    printMan(apps, lines.back()->ofAll());
  else
    printCompletion(apps, lines.back()->ofAll());
  return 0;
}

int run(const std::vector<std::string>& words) {
  if (words.empty()) {
    std::cerr << kUsage;
    return 2;
  }
  const std::string& first = words[0];
  if (first == "--help" || first == "-h") {
    std::cout << kUsage;
    return 0;
  }
  if (first == "--version") {
    std::cout << "gxshape " GXSHAPE_VERSION "\n";
    return 0;
  }
  if (first == "--list") {
    std::cout << namesCsv();
    return 0;
  }
  if (first == "--man" || first == "--completion") return printOfAll(first);
  std::vector<std::string> names;
  for (const auto& about : commands()) {
    if (first == about.name) return CommandLine(about).run({words.begin() + 1, words.end()});
    names.emplace_back(about.name);
  }
  const std::string near = nearest(first, names);
  return wrongUsage(
      "", "no command '" + first + "'" + (near.empty() ? "" : "; did you mean '" + near + "'?"));
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::cerr << "gxshape: " << error.what() << '\n';
    return 3;
  }
}
