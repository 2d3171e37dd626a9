// UTF-8 repair, which nlohmann-json knows.
#include "writers/JsonText.h"

#include <nlohmann/json.hpp>

using nlohmann::json;

std::string JsonText(std::string_view text) { return json(text).dump(-1, ' ', false, json::error_handler_t::replace); }
