// Thousands of random edits, each compared with a plain model of a sample: values, width, play and
// loop points, results, dirty flags and notifications.
#include <algorithm>
#include <cmath>
#include <random>

#include "edit/EditTools.h"

namespace zyl::test {
namespace {

constexpr int kNone = INT32_MIN;  // no result

// A sample, edited as a whole or in one channel. The points are those of EditTest::Points.
struct Model {
  std::vector<Values> sound;
  int bits = 8, channel = -1;
  Values points = {};

  int Size() const { return static_cast<int>(sound[0].size()); }
  int Clamped(int index) const { return std::clamp(index, 0, std::max(Size() - 1, 0)); }
  bool Edits(size_t c) const { return channel < 0 || static_cast<int>(c) == channel; }
  const Values& Partner(size_t c) const { return sound[std::min(c, sound.size() - 1)]; }
  template <class Edit>
  void ForEdited(Edit edit) {
    for (size_t c = 0; c < sound.size(); ++c)
      if (Edits(c)) edit(sound[c]);
  }
  template <class Edit>
  void Change(int s, int e, Edit edit) {
    const double reach = std::ldexp(1.0, bits - 1);
    ForEdited([&](Values& values) {
      for (auto v = values.begin() + s; v < values.begin() + e; ++v)
        *v = static_cast<int>(std::clamp<double>(edit(*v), -reach, reach - 1));
    });
  }
  void SetBits(int to) {
    const auto shift = [&](int v) { return to < bits ? v >> (bits - to) : v * (1 << (to - bits)); };
    for (Values& v : sound) std::transform(v.begin(), v.end(), v.begin(), shift);
    bits = to;
  }
  void Resize(int n) {
    const int last = n < Size() ? std::max(n - 1, 0) : INT32_MAX;
    for (Values& values : sound) values.resize(static_cast<size_t>(n));
    for (int& p : points) p = std::min(p, last);
  }
  void SetLoops(int n) { points.resize(static_cast<size_t>(2 * n + 2)); }
  void Extract(int s, int e) {
    if (Size() == 0) return;
    for (Values& values : sound) values = Values(values.begin() + s, values.begin() + e + 1);
    points[1] = std::min(points[1], e - s);
    if (points[0] >= points[1]) points[0] = std::max(points[1] - 1, 0);
    for (size_t i = 2; i < points.size(); ++i) {
      if (points[i] >= s) points[i] = points[i] <= e ? points[i] - s : i % 2 == 0 ? 0 : e - s;
    }
  }
  void Delete(int s, int e) {
    if (Size() == 0) return;
    for (Values& values : sound) values.erase(values.begin() + s, values.begin() + e);
    const int end = std::min(points[1], Size() - 1);
    for (int& p : points) p = p > e ? p - (e - s) : std::min(p, s);
    points[1] = end;
    for (size_t i = 3; i < points.size(); i += 2) points[i] += points[i] == points[i - 1] ? 1 : 0;
  }
  void Insert(Model other, int index) {
    if (Size() == 0) bits = other.bits;
    if (Size() > 0) index = Clamped(index);
    other.SetBits(bits);
    for (int& p : points) p += p > index ? other.Size() : 0;
    for (size_t c = sound.size(); c-- > 0;) {
      const Values in = Edits(c) ? other.Partner(c) : Values(other.sound[0].size());
      sound[c].insert(sound[c].begin() + Clamped(index), in.begin(), in.end());
    }
  }
  void CopyFrom(const Model& other, int s, int e) {
    const auto [low, high] = std::minmax({other.Clamped(s), other.Clamped(e)});
    SetBits(other.bits);
    for (size_t c = 0; c < sound.size(); ++c) {
      const auto from = other.Partner(c).begin();
      if (Edits(c)) sound[c] = Values(from + low, from + high + 1);
      sound[c].resize(static_cast<size_t>(high - low + 1));
    }
  }
};

TEST_F(EditTest, RandomEditsMatchAPlainModel) {
  std::mt19937 random(7);
  const auto pick = [&](int low, int high) {
    return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
  };
  Listen();
  Model m, other;
  for (int edit = 0; edit < 4000 && !HasFailure(); ++edit) {
    if (edit % 40 == 0) {
      for (Model* made : {&m, &other}) *made = {Counting(30, pick(1, 3)), 8 * pick(1, 4)};
      StoreSound(Path("other.wav"), SF_FORMAT_WAV, other.bits, other.sound);
      Open(m.bits, m.sound);
      m.points = Points(whole);
    }
    const int last = m.Size() - 1, loops = static_cast<int>(m.points.size()) / 2 - 1;
    m.channel = pick(-1, second == nullptr ? 0 : 1);
    RIOObject *const o = Target(m.channel), *const source = Whole(Path("other.wav"));
    const int s = pick(-5, last + 6), e = pick(-5, last + 6), at = m.Clamped(s);
    const int from = std::min(at, m.Clamped(e)), to = std::max(at, m.Clamped(e));
    const int width = 8 * pick(1, 4), n = pick(0, 8), size = std::max(last + pick(-30, 20), 0);
    const int value = static_cast<int>(random()) >> pick(0, 31), i = pick(0, 7);
    const bool full = last >= 0, used = i < loops;
    int unset[] = {-1, -1}, &start = m.points[0], &end = m.points[1];
    int* const loop = used ? m.points.data() + 2 * i + 2 : unset;
    const std::string note = std::to_string(s) + " -1 -1 ", ifUsed = used ? "PR" : "";
    const auto call = [&](const char* method, auto... rest) {
      return [=, this] { return program(method, o, rest...); };
    };
    const auto reverse = [&](Values& v) { std::reverse(v.begin() + from, v.begin() + to + full); };
    struct Row {
      std::function<Outcome()> call;
      int result;
      std::string dirt;
      std::function<void()> apply;
      std::string notes = {};
    };
    const auto range = [&](const char* method, auto number, auto change) {
      return Row{call(method, s, e, number), kNone, "R",
                 [&, change] { m.Change(from, to, change); }};
    };
    const Row rows[] = {
        {call("SampleSize", size), m.Size(), "", [&] { m.Resize(size); }},
        {call("SampleStart", s), start, s == start ? "" : "PR", [&] { start = s; }},
        {call("SampleEnd", s), end, s == end ? "R" : "PR", [&] { end = s; }},
        {call("SampleBits", width), m.bits, width == m.bits ? "" : "PR", [&] { m.SetBits(width); }},
        {call("SampleValue", s, value), full ? m.sound[m.channel == 1].begin()[at] : 0, "PR",
         [&] { m.Change(at, at + full, [&](int) { return value; }); }},
        range("SampleSetValues", value, [=](int) { return int16_t(value); }),
        range("SampleMultiplyValues", value / 65536.0,
              [=](int v) { return v * (value / 65536.0); }),
        range("SampleOffsetValues", value, [=](int v) { return double(value) + v; }),
        {call("SampleReverseValues", s, e), kNone, "R", [&] { m.ForEdited(reverse); }},
        {call("SampleExtract", s, e), full, "PR", [&] { m.Extract(from, to); }},
        {call("SampleDelete", s, e), full, "PR", [&] { m.Delete(from, to); }},
        {call("SampleCopyTo", source, s), 1, "", [&] { m.Insert(other, s); }},
        {call("SampleCopyFrom", source, s, e), 1, "", [&] { m.CopyFrom(other, s, e); }},
        {call("SampleLoopCount", n), loops, n == loops ? "" : "PR", [&] { m.SetLoops(n); }},
        {call("SampleLoopStart", i, s), loop[0], ifUsed, [&] { loop[0] = s; }, "302 " + note},
        {call("SampleLoopEnd", i, s), loop[1], ifUsed, [&] { loop[1] = s; }, "303 " + note}};
    const Row& row = rows[static_cast<size_t>(pick(0, static_cast<int>(std::size(rows)) - 1))];
    SCOPED_TRACE("edit " + std::to_string(edit) + ", row " + std::to_string(&row - rows));
    notified.clear();
    const Outcome outcome = row.call();
    const bool isBool = outcome.result != nullptr && outcome.result->Type() == kTypeBool;
    EXPECT_EQ(isBool ? outcome.Bool() : row.result == kNone ? kNone : outcome.Int(), row.result);
    row.apply();
    EXPECT_EQ(notified + TakeDirtyFlags(), (row.dirt.empty() ? "" : row.notes) + row.dirt);
    EXPECT_EQ(ReadAll(whole), m.sound);
    EXPECT_EQ(std::pair(Get(whole, "SampleBits"), Points(whole)), std::pair(m.bits, m.points));
  }
}

}  // namespace
}  // namespace zyl::test
