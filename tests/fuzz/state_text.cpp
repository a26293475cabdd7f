// A saved state comes back from its text, whether compressed or not, and any text is read or refused.
#include "src/workbook/saved_state/state_text.h"

#include "src/foundation/exceptions.h"
#include "tests/fuzz/fuzz.h"

namespace fuzz {

namespace {

constexpr std::size_t limit = 1U << 16U;

void requireRoundTrip(const Bytes& bytes) {
    quorvane::InflationAllowance forWriting{limit, limit};
    quorvane::InflationAllowance forReading{limit, limit};
    const std::wstring text = quorvane::stateTextOf(bytes, forWriting);
    require(text.empty() == bytes.empty(), "no bytes and no text are the same");
    require(text.size() <= quorvane::base64Length(bytes.size()), "compressing never lengthens");
    require(quorvane::bytesOfStateText(text, forReading) == bytes, "read as written");
    require(forReading.next() == forWriting.next(), "what is written counts like what is read");
}

} // namespace

void run(Input input) {
    const std::size_t copies = 1 + input.byte() % 64;
    const std::string_view given = input.text();
    Bytes bytes;
    for (std::size_t i = 0; i < copies; ++i) {
        bytes.insert(bytes.end(), given.begin(), given.end());
    }
    requireRoundTrip(bytes);
    try {
        quorvane::InflationAllowance allowance{limit};
        const Bytes read = quorvane::bytesOfStateText(wide(given), allowance);
        require(read.size() <= limit, "no more than the limit");
        requireRoundTrip(read);
    } catch (const quorvane::CWStrException&) {
        require(given.starts_with('#'), "only a compressed state is too large");
    }
}

} // namespace fuzz
