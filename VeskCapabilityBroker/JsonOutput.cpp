#include "VeskCapabilityBroker/JsonOutput.hpp"

namespace vesk {

void writeJSON(const AnyEncodable& value, ByteOutput& output) {
    const std::string bytes = value.encodeClosure(JsonEncoder{});
    output.write(bytes);
    output.write("\n");
}

} // namespace vesk
