// Colours as text.
#include <veldispc/color.h>

std::string gxColor::hex() const {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text = "#";
  for (const unsigned int part : {red_, green_, blue_}) {
    text += kDigits[part >> 4U];
    text += kDigits[part & 15U];
  }
  return text;
}
