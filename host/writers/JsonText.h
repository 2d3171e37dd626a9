#pragma once

#include <string>
#include <string_view>

/// The text as a JSON string with its quotes. Bytes that are no UTF-8 become U+FFFD.
std::string JsonText(std::string_view text);
