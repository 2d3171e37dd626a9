// The function types of the language: sampled (0), exponential interpolation (2) and stitching (3).
#include "complete/Functions.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "complete/PathBridge.h"
#include "objects/Array.h"
#include "objects/Dictionary.h"
#include "objects/File.h"
#include "objects/Number.h"
#include "objects/String.h"

namespace {

/// How deep stitching functions may hold each other, and of how many inputs a sampled function is interpolated.
constexpr int MAX_DEPTH = 16;
constexpr std::size_t MAX_INPUTS = 6;

using Numbers = std::vector<double>;

Numbers NumbersOf(const CDictionary& dict, const char* key) {
    Numbers numbers;
    const CElement* value = dict.GetValue(key);
    if (!value || ReadNumbers(*value, numbers) != PSERR_NONE) numbers.clear();
    return numbers;
}

double NumberOf(const CDictionary& dict, const char* key, double otherwise) {
    const auto* number = As<CNumberElement>(dict.GetValue(key));
    return number ? number->GetReal() : otherwise;
}

double Map(double x, double fromLow, double fromHigh, double toLow, double toHigh) {
    return fromHigh == fromLow ? toLow : toLow + (x - fromLow) * (toHigh - toLow) / (fromHigh - fromLow);
}

/// Brings each value within its pair of bounds; bounds that are missing bound nothing.
void Clamp(Numbers& values, const Numbers& bounds) {
    for (std::size_t i = 0; i < values.size() && 2 * i + 1 < bounds.size(); ++i) {
        values[i] = std::min(std::max(values[i], bounds[2 * i]), bounds[2 * i + 1]);
    }
}

/// Samples of 1 to 32 bits, the high bit first, one behind the other.
double SampleAt(std::string_view data, std::size_t index, unsigned bits) {
    std::uint64_t value = 0;
    for (std::size_t bit = index * bits; bit < (index + 1) * bits; ++bit) {
        const auto byte = static_cast<unsigned char>(data[bit / 8]);
        value = value << 1 | (byte >> (7 - bit % 8) & 1U);
    }
    return static_cast<double>(value);
}

Numbers EvaluateSampled(const CDictionary& function, const Numbers& inputs, const Numbers& domain) {
    const Numbers range = NumbersOf(function, "Range");
    const Numbers size = NumbersOf(function, "Size");
    const auto bits = static_cast<unsigned>(std::clamp(NumberOf(function, "BitsPerSample", 0), 0.0, 32.0));
    const auto* source = As<CStringElement>(function.GetValue("DataSource"));
    const std::size_t outputs = range.size() / 2;
    if (!source || bits == 0 || outputs == 0 || size.size() != inputs.size() || inputs.size() > MAX_INPUTS) return {};
    double samples = static_cast<double>(outputs);
    for (const double n : size) samples *= n >= 1 ? std::floor(n) : 0;
    const std::string_view data = source->Bytes();
    if (!(samples >= 1 && samples * bits <= 8.0 * static_cast<double>(data.size()))) return {};

    Numbers encode = NumbersOf(function, "Encode");
    if (encode.size() < 2 * inputs.size()) {
        encode.clear();
        for (const double n : size) encode.insert(encode.end(), {0, std::floor(n) - 1});
    }
    Numbers decode = NumbersOf(function, "Decode");
    if (decode.size() < range.size()) decode = range;

    Numbers place(inputs.size());
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        const double x = Map(inputs[i], domain[2 * i], domain[2 * i + 1], encode[2 * i], encode[2 * i + 1]);
        place[i] = std::min(std::max(x, 0.0), std::floor(size[i]) - 1);
        if (std::isnan(place[i])) return {};
    }
    Numbers result(outputs);
    for (std::size_t corner = 0; corner < std::size_t{1} << inputs.size(); ++corner) {
        double weight = 1;
        std::size_t index = 0;
        std::size_t stride = 1;
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            const double low = std::floor(place[i]);
            const bool isHigh = (corner >> i & 1U) != 0;
            weight *= isHigh ? place[i] - low : 1 - (place[i] - low);
            const double at = std::min(low + (isHigh ? 1 : 0), std::floor(size[i]) - 1);
            index += static_cast<std::size_t>(at) * stride;
            stride *= static_cast<std::size_t>(size[i]);
        }
        if (weight == 0) continue;
        for (std::size_t k = 0; k < outputs; ++k) result[k] += weight * SampleAt(data, index * outputs + k, bits);
    }
    const double greatest = std::exp2(bits) - 1;
    for (std::size_t k = 0; k < outputs; ++k) result[k] = Map(result[k], 0, greatest, decode[2 * k], decode[2 * k + 1]);
    return result;
}

Numbers EvaluateExponential(const CDictionary& function, double x) {
    Numbers low = NumbersOf(function, "C0");
    Numbers high = NumbersOf(function, "C1");
    if (low.empty()) low = {0};
    if (high.empty()) high = {1};
    const double power = std::pow(x, NumberOf(function, "N", 1));
    Numbers result(std::min(low.size(), high.size()));
    for (std::size_t k = 0; k < result.size(); ++k) result[k] = low[k] + power * (high[k] - low[k]);
    return result;
}

Numbers Evaluate(const CDictionary& function, Numbers inputs, int depth);

Numbers EvaluateStitched(const CDictionary& function, double x, const Numbers& domain, int depth) {
    const auto* functions = As<CArrayElement>(function.GetValue("Functions"));
    const Numbers bounds = NumbersOf(function, "Bounds");
    const Numbers encode = NumbersOf(function, "Encode");
    const std::size_t count = bounds.size() + 1;
    if (!functions || functions->GetLength() != static_cast<std::int32_t>(count) || encode.size() < 2 * count)
        return {};
    const auto part = static_cast<std::size_t>(std::upper_bound(bounds.begin(), bounds.end(), x) - bounds.begin());
    const double low = part == 0 ? domain[0] : bounds[part - 1];
    const double high = part == bounds.size() ? domain[1] : bounds[part];
    const auto* inner = As<CDictionary>(functions->GetAt(static_cast<std::int32_t>(part)));
    if (!inner) return {};
    return Evaluate(*inner, {Map(x, low, high, encode[2 * part], encode[2 * part + 1])}, depth + 1);
}

Numbers Evaluate(const CDictionary& function, Numbers inputs, int depth) {
    const Numbers domain = NumbersOf(function, "Domain");
    if (depth > MAX_DEPTH || inputs.empty() || domain.size() != 2 * inputs.size()) return {};
    Clamp(inputs, domain);
    Numbers result;
    switch (static_cast<int>(std::clamp(NumberOf(function, "FunctionType", -1), -1.0, 9.0))) {
        case 0:
            result = EvaluateSampled(function, inputs, domain);
            break;
        case 2:
            result = EvaluateExponential(function, inputs[0]);
            break;
        case 3:
            result = EvaluateStitched(function, inputs[0], domain, depth);
            break;
        default:
            break;
    }
    Clamp(result, NumbersOf(function, "Range"));
    return result;
}

}  // namespace

std::vector<double> EvaluateFunction(const CDictionary& function, const std::vector<double>& inputs) {
    return Evaluate(function, inputs, 0);
}
