/// How numbers and names stand in an archive.
#pragma once

#include <velstd/archive.h>

#include <cstddef>
#include <string>

/// Writes an unsigned number, least significant byte first.
template <class Unsigned>
void gf_PutLittle(unsigned char* bytes, Unsigned value) {
  for (std::size_t i = 0; i < sizeof value; ++i) bytes[i] = static_cast<unsigned char>(value >> (8 * i));
}

/// Reads it back.
template <class Unsigned>
Unsigned gf_GetLittle(const unsigned char* bytes) {
  Unsigned value = 0;
  for (std::size_t i = 0; i < sizeof value; ++i) {
    value = static_cast<Unsigned>(value | static_cast<Unsigned>(Unsigned{bytes[i]} << (8 * i)));
  }
  return value;
}

/// Stores or loads an unsigned number of the width of its type.
template <class Unsigned>
void gf_TransferLittle(gxArchive& archive, Unsigned& value) {
  unsigned char bytes[sizeof(Unsigned)] = {};
  if (archive.isStoring()) gf_PutLittle(bytes, value);
  archive.transfer(bytes, sizeof bytes);
  if (archive.isLoading()) value = gf_GetLittle<Unsigned>(bytes);
}

/// Returns the text for a message, with everything that is not plain text replaced: names may come
/// from an archive.
inline std::wstring gf_Printable(const std::string& text) {
  std::wstring result;
  for (const char c : text) result += c >= ' ' && c <= '~' ? static_cast<wchar_t>(c) : L'?';
  return result;
}
