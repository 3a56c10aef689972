#include "NumberFormat.h"
#include "OraError.h"

#include <cstdlib>
#include <string>
#include <string_view>

// "model \n number \n text": any model is read or refused, any number printed, any text read or
// refused, and nothing is printed longer than the model allows.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto cut = [&] {
        const auto end = input.find('\n');
        const std::string_view part = input.substr(0, end);
        input = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
        return part;
    };
    const std::string_view model = cut();
    const std::string_view number = cut();
    try {
        const auto format = ora::NumberFormat::parse(model);
        const auto value = ora::OracleNumber::parse(number).value_or(ora::OracleNumber(12345));
        constexpr std::size_t MostText = 256;
        if (format.toText(value).size() > MostText)
            std::abort();
        (void)format.toNumber(input);
    } catch (const ora::OraError&) {
    }
    return 0;
}
