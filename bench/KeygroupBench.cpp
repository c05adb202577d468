// What a set over 1000 keygroups costs through the script method, against a bare loop that stores
// the same byte of each of 1000 records of the same size, in one run.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "host/akai.h"
#include "host/hostapp.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kKeygroups = 1000;
constexpr int kRounds = 4000;

int Call(RIOObject* object, const char* method, ROCParams& arguments) {
  ROCParam* result = nullptr;
  const int status = object->GetDispatch(true)->CallFunctionIndirect(method, &arguments, &result);
  deleteROCParam(result);
  return status;
}

template <class Body>
double Seconds(Body body) {
  const auto begin = Clock::now();
  body();
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

double Median(std::vector<double>& times) {
  std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
  return times[times.size() / 2];
}

}  // namespace

int main() {
  std::string reason;
  const std::unique_ptr<ZylModule> module = ZylModule::Load(ZYL_MODULE, reason);
  if (module == nullptr) {
    std::fprintf(stderr, "%s\n", reason.c_str());
    return 1;
  }
  const std::unique_ptr<ROCAlgo> program(ZylNewScriptObject("ZylSProgram"));
  ROCParams none;
  none.AddTail(newROCParam(static_cast<RIOObject*>(nullptr)));
  Call(program.get(), "Create", none);
  for (int k = 1; k < kKeygroups; ++k) {
    ROCParams index;
    index.AddTail(newROCParam(k));
    Call(program.get(), "KGCreate", index);
  }
  std::vector<akaiKeyGroup> bare(kKeygroups);
  std::vector<double> bareTimes;
  std::vector<double> setTimes;
  for (int round = 0; round < kRounds; ++round) {
    const auto value = static_cast<uint8_t>(round);
    bareTimes.push_back(Seconds([&] {
      for (akaiKeyGroup& keygroup : bare) keygroup.filterFreq = value;
      asm volatile("" : : "r"(bare.data()) : "memory");
    }));
    ROCParams arguments;
    arguments.AddTail(newROCParam(-1));
    arguments.AddTail(newROCParam(int32_t{value}));
    setTimes.push_back(Seconds([&] { Call(program.get(), "KGfilterFreq", arguments); }));
  }
  const double bareMedian = Median(bareTimes);
  const double setMedian = Median(setTimes);
  std::printf("bare loop              %7.0f ns\n", bareMedian * 1e9);
  std::printf("KGfilterFreq(-1, v)    %7.0f ns   ratio %.2f   bar 3\n", setMedian * 1e9,
              setMedian / bareMedian);
  return setMedian / bareMedian <= 3 ? 0 : 1;
}
