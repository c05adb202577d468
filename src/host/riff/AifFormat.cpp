#include "AifFormat.h"

#include <bit>
#include <cmath>

namespace zyl {
namespace {

constexpr int kExponentBias = 16383;

constexpr AifPcmType kPcmTypes[] = {
    {"NONE", true, 0}, {"twos", true, 0},  {"sowt", false, 0}, {"in24", true, 3},
    {"in32", true, 4}, {"42ni", false, 3}, {"23ni", false, 4},
};

}  // namespace

const AifPcmType* FindAifPcmType(const std::string& compression) {
  for (const AifPcmType& type : kPcmTypes) {
    if (compression == type.id) return &type;
  }
  return nullptr;
}

bool ReadAifFormat(const Bytes& bytes, bool isAifc, AifFormat& format) {
  FieldReader in(bytes, ByteOrder::kBig);
  format.channels = in.U16();
  format.frames = in.U32();
  format.bits = in.U16();
  const std::byte* rate = in.Raw(10);
  if (rate == nullptr) return false;
  format.rate.assign(rate, rate + 10);
  format.rateHz = RateFromExtended(rate);
  format.compression = "NONE";
  if (isAifc) {
    format.compression = in.Text(4);
    if (!in.Good()) return false;
    const size_t left = in.Left();
    const std::byte* name = in.Raw(left);
    format.compressionName.assign(name, name + left);
  }
  return true;
}

double RateFromExtended(const std::byte* tenBytes) {
  FieldReader in(tenBytes, 10, ByteOrder::kBig);
  const unsigned signAndExponent = in.U16();
  const auto mantissa = static_cast<double>(in.U64());
  const int exponent = static_cast<int>(signAndExponent & 0x7FFF) - kExponentBias - 63;
  const double magnitude = std::ldexp(mantissa, exponent);
  return (signAndExponent & 0x8000) != 0 ? -magnitude : magnitude;
}

Bytes ExtendedFromRate(uint32_t rateHz) {
  FieldWriter out(ByteOrder::kBig);
  if (rateHz == 0) return Bytes(10);
  const int zeros = std::countl_zero(uint64_t{rateHz});
  out.U16(static_cast<uint32_t>(kExponentBias + 63 - zeros)).U64(uint64_t{rateHz} << zeros);
  return std::move(out.block);
}

}  // namespace zyl
