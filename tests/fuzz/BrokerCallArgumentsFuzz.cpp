// A broker method's parameters and a command line's arguments, both from the
// input, bound into values; then the text forms the client prints.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "engine/MString.h"
#include "host/BrokerCallArguments.h"

using namespace SASM;

namespace {

std::u16string Text(FuzzedDataProvider& input) {
  std::string bytes = input.ConsumeRandomLengthString(64);
  return MString::FromUtf8(bytes.data(), static_cast<int32_t>(bytes.size())).ToU16();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using Type = BrokerCallArguments::Type;
  FuzzedDataProvider input(data, size);
  std::vector<BrokerCallArguments::Parameter> parameters(input.ConsumeIntegralInRange<size_t>(0, 8));
  for (BrokerCallArguments::Parameter& parameter : parameters) {
    parameter.name = Text(input);
    parameter.type = static_cast<Type>(input.ConsumeIntegralInRange<int>(0, static_cast<int>(Type::Unknown)));
    parameter.in = input.ConsumeBool();
    parameter.out = input.ConsumeBool();
    parameter.hasDefault = input.ConsumeBool();
    if (parameter.hasDefault) parameter.defaultText = Text(input);
  }
  std::vector<std::u16string> args(input.ConsumeIntegralInRange<size_t>(0, 9));
  for (std::u16string& arg : args) arg = Text(input);

  std::vector<BrokerCallArguments::Value> values;
  std::string error;
  const bool bound = BrokerCallArguments::Bind(parameters, args, values, error);
  if (bound != error.empty()) std::abort();
  if (bound) {
    if (values.size() != parameters.size()) std::abort();
    for (size_t i = 0; i < values.size(); ++i) {
      const int64_t number = values[i].number;
      // Every number lands in its type's range.
      if (parameters[i].type == Type::Int32 && (number < INT32_MIN || number > INT32_MAX)) std::abort();
      if (parameters[i].type == Type::UInt32 && (number < 0 || number > UINT32_MAX)) std::abort();
      BrokerCallArguments::Hex(values[i].bytes.data(), values[i].bytes.size());
      // The printed form of text is one line.
      if (BrokerCallArguments::Text(values[i].text).find_first_of("\r\n") != std::string::npos) std::abort();
    }
  }
  BrokerCallArguments::Describe(Text(input), parameters);
  for (const std::u16string& arg : args) {
    if (BrokerCallArguments::Ascii(arg).size() != arg.size()) std::abort();
  }
  return 0;
}
