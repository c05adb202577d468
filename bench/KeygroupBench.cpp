// Cost of setting a field of 1000 keygroups with the script method, compared with a plain loop that
// stores one byte in each of 1000 records of the same size, in one run.
#include <memory>
#include <vector>

#include "Measure.h"
#include "Script.h"
#include "host/akai.h"

namespace {

constexpr int kKeygroups = 1000;
constexpr int kRounds = 4000;

}  // namespace

int main() {
  const auto module = bench::LoadModule();
  const std::unique_ptr<ROCAlgo> program(ZylNewScriptObject("ZylSProgram"));
  bench::Call(*program, "Create", static_cast<RIOObject*>(nullptr));
  for (int k = 1; k < kKeygroups; ++k) bench::Call(*program, "KGCreate", k);
  std::vector<akaiKeyGroup> bare(kKeygroups);
  uint8_t value = 0;
  const double ratio = bench::Ratio(
      kRounds, [&] { bench::Call(*program, "KGfilterFreq", -1, int32_t{++value}); },
      [&] {
        for (akaiKeyGroup& keygroup : bare) keygroup.filterFreq = value;
        asm volatile("" : : "r"(bare.data()) : "memory");
      });
  bench::Report("KGfilterFreq(-1, v) on 1000 keygroups, times a bare loop", ratio,
                bench::AtMost(3));
}
