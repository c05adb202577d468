// Signal analysis on signals with known results.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "audio/Crossfade.h"
#include "audio/Levels.h"
#include "audio/LoopFinder.h"
#include "audio/Onsets.h"
#include "audio/RootPitch.h"
#include "audio/Seam.h"

namespace zyl::test {
using namespace audio;
namespace {

constexpr double kRate = 44100;
constexpr double kTurn = 2 * std::numbers::pi;

// A note with ten harmonics, vibrato and a little noise, different in each channel.
Sound Note(double hertz, double seconds, size_t channels, double vibratoCents = 0,
           double amplitude = 0.3, unsigned seed = 1, double attackSeconds = 0.1) {
  std::mt19937 random(seed);
  std::normal_distribution<double> noise(0, 1e-4);
  Sound sound{kRate,
              std::vector(channels, std::vector<float>(static_cast<size_t>(seconds * kRate)))};
  double phase = 0;
  for (size_t i = 0; i < sound.Frames(); ++i) {
    const double t = static_cast<double>(i) / kRate;
    phase += hertz * std::exp2(vibratoCents / 1200 * std::sin(kTurn * 5.3 * t)) / kRate;
    const double envelope = std::min(1.0, t / attackSeconds);
    for (size_t c = 0; c < channels; ++c) {
      double value = noise(random);
      for (int h = 1; h <= 10; ++h) {
        value += std::sin(kTurn * h * phase + static_cast<double>(c) * h * h) / (h * h);
      }
      sound.channels[c][i] = static_cast<float>(amplitude * envelope * value);
    }
  }
  return sound;
}

Sound Scaled(const Sound& sound, float factor) {
  Sound scaled = sound;
  for (auto& channel : scaled.channels) {
    for (float& x : channel) x *= factor;
  }
  return scaled;
}

TEST(Levels, LoudnessIsThatOfTheStandardsCalibrationTone) {
  for (const double rate : {44100.0, 48000.0, 96000.0}) {
    Sound tone{rate, {std::vector<float>(static_cast<size_t>(rate))}};
    for (size_t i = 0; i < tone.Frames(); ++i) {
      tone.channels[0][i] =
          static_cast<float>(std::sin(kTurn * 997 * static_cast<double>(i) / rate));
    }
    EXPECT_NEAR(Loudness(tone), -3.01, 0.02) << rate;
    tone.channels.push_back(tone.channels[0]);
    EXPECT_NEAR(Loudness(tone), 0, 0.02) << rate;
    EXPECT_NEAR(Loudness(Scaled(tone, 0.1F)), -20, 0.02) << rate;
  }
  EXPECT_TRUE(std::isinf(Loudness({kRate, {std::vector<float>(100)}})));
}

TEST(Levels, SoundingFramesSpanAllChannels) {
  Sound sound{kRate, {std::vector<float>(100), std::vector<float>(100)}};
  EXPECT_FALSE(SoundingFrames(sound, -60));
  sound.channels[0][60] = 1;
  sound.channels[1][20] = -0.01F;
  sound.channels[1][90] = 0.0005F;  // 66 dB below the peak
  const auto range = SoundingFrames(sound, -60);
  ASSERT_TRUE(range);
  EXPECT_EQ(range->first, 20U);
  EXPECT_EQ(range->last, 60U);
}

TEST(Seam, IsTheJumpRelativeToTheSound) {
  const Sound sound = Note(441, 2, 1);  // a period of 100 frames
  const Loop whole{30000, 30000 + 440 * 100 - 1};
  EXPECT_LT(SeamDecibels(sound, whole), 3);
  const Loop shifted{30000, 30000 + 440 * 100 + 24};  // a quarter of a period off
  const double click = SeamDecibels(sound, shifted);
  EXPECT_GT(click, 30);
  for (const float factor : {0.0625F, 4.0F}) {
    EXPECT_NEAR(SeamDecibels(Scaled(sound, factor), shifted), click, 0.01);
  }
  // The result is that of the worst channel.
  Sound stereo = sound;
  stereo.channels.push_back(sound.channels[0]);
  std::rotate(stereo.channels[1].begin(), stereo.channels[1].begin() + 13,
              stereo.channels[1].end());
  stereo.channels[1][whole.last] += 0.1F;
  EXPECT_GT(SeamDecibels(stereo, whole), 30);
}

TEST(Seam, StepsAreThoseOfLevelAndSpectrum) {
  Sound sound = Note(441, 2, 1);
  for (size_t i = 0; i < 50000; ++i) sound.channels[0][i] *= 0.5F;
  const Steps steps = StepsOf(sound, {20000, 79999});
  EXPECT_NEAR(steps.levelDb, -6.02, 0.1);
  EXPECT_LT(steps.spectrumDb, 0.5);
}

TEST(LoopFinder, FindsLoopsThatDoNotClick) {
  for (const double hertz : {55.0, 261.63, 1046.5}) {
    for (const size_t channels : {1U, 2U}) {
      const Sound sound = Note(hertz, 3, channels, 15);
      const LoopWish wish{.periodFrames = kRate / hertz, .most = 5};
      const auto found = FindLoops(sound, wish);
      ASSERT_EQ(found.size(), 5U) << hertz;
      EXPECT_LT(found[0].seamDb, 3) << hertz;
      EXPECT_GE(found[0].loop.Length(), 0.3 * kRate) << hertz;
      EXPECT_LT(std::fabs(found[0].steps.levelDb), 1) << hertz;
      EXPECT_EQ(FindLoops(sound, {.periodFrames = wish.periodFrames})[0].loop.first,
                found[0].loop.first);
      // Level does not matter.
      const auto quiet = FindLoops(Scaled(sound, 0.0625F), wish);
      EXPECT_EQ(quiet[0].loop.first, found[0].loop.first) << hertz;
      EXPECT_EQ(quiet[0].loop.last, found[0].loop.last) << hertz;
    }
  }
}

TEST(LoopFinder, ReturnsNothingWhereThereIsNoLoop) {
  EXPECT_TRUE(FindLoops({kRate, {}}, {}).empty());
  EXPECT_TRUE(FindLoops({kRate, {std::vector<float>(50000)}}, {}).empty());
  for (size_t frames = 1; frames < 400; ++frames) {
    const Sound sound = Note(4410, static_cast<double>(frames) / kRate + 1e-6, 1);
    for (const FoundLoop& found : FindLoops(sound, {})) {
      EXPECT_LT(found.loop.last, sound.Frames());
    }
  }
  EXPECT_TRUE(FindLoops(Note(441, 1, 1), {.shortestFrames = 44100}).empty());
  // The silence after a short note joins perfectly, but is no loop.
  Sound decayed = Note(441, 4, 1);
  for (size_t i = 0; i < decayed.Frames(); ++i) {
    decayed.channels[0][i] *= std::exp(-static_cast<float>(i) / 8000);
    if (i > 60000) decayed.channels[0][i] = 0;
  }
  for (const FoundLoop& found : FindLoops(decayed, {.most = 9})) {
    EXPECT_LT(found.loop.last, 61000U);
  }
}

TEST(Crossfade, JoinsAnyLoopAndChangesNothingElse) {
  const Sound before = Note(261.63, 3, 2, 40, 0.3, 7);
  for (const Loop loop : {Loop{30000, 90000}, Loop{20011, 40123}, Loop{500, 131000}}) {
    Sound sound = before;
    ASSERT_GT(SeamDecibels(sound, loop), 20);
    const size_t frames = std::min<size_t>(882, LongestCrossfade(loop));
    const size_t changed = CrossfadeLoop(sound, loop, frames);
    EXPECT_LT(SeamDecibels(sound, loop), 3) << loop.first;
    const size_t start = loop.last + 1 - frames;
    for (size_t c = 0; c < 2; ++c) {
      for (size_t i = 0; i < sound.Frames(); ++i) {
        if (i >= start && i < start + changed) continue;
        ASSERT_EQ(sound.channels[c][i], before.channels[c][i]);
      }
    }
    // Playing on after the loop does not click either.
    if (loop.last + frames < sound.Frames()) {
      const auto& x = sound.channels[0];
      EXPECT_LT(std::fabs(x[loop.last + 1] - x[loop.last]), 0.05F);
    }
  }
}

// Notes of 0.8 s with decay, one each second; every third one is 16 dB softer than the one before
// and begins in its tail.
struct Take {
  Sound sound{kRate, std::vector(2, std::vector<float>(static_cast<size_t>(9.5 * kRate)))};
  std::vector<size_t> onsets;
};
Take NotesWithTails() {
  Take take;
  std::mt19937 random(3);
  std::normal_distribution<float> noise(0, 3e-5F);
  for (auto& channel : take.sound.channels) {
    for (float& x : channel) x = noise(random);
  }
  for (size_t n = 0; n < 9; ++n) {
    take.onsets.push_back(static_cast<size_t>((0.3 + static_cast<double>(n)) * kRate));
    const Sound note = Note(110 * std::exp2(static_cast<double>(n) / 4), 2, 2, 0,
                            n % 3 == 0 ? 0.06 : 0.4, 1, 0.002);
    for (size_t c = 0; c < 2; ++c) {
      auto& out = take.sound.channels[c];
      for (size_t i = 0; i < note.Frames() && take.onsets[n] + i < out.size(); ++i) {
        const double t = static_cast<double>(i) / kRate;
        const double fade = t < 0.8 ? 1 : std::exp(-(t - 0.8) * 25);
        out[take.onsets[n] + i] += note.channels[c][i] * static_cast<float>(fade);
      }
    }
  }
  return take;
}

TEST(Onsets, FindsQuietNotesInTheTailsOfLoudOnes) {
  const Take take = NotesWithTails();
  const auto notes = FindNotes(take.sound, {});
  ASSERT_EQ(notes.size(), take.onsets.size());
  for (size_t i = 0; i < notes.size(); ++i) {
    const double early = static_cast<double>(take.onsets[i]) - static_cast<double>(notes[i].first);
    EXPECT_GE(early, 0) << i;
    EXPECT_LE(early, 0.008 * kRate) << i;
    EXPECT_GT(notes[i].last, take.onsets[i] + static_cast<size_t>(0.8 * kRate)) << i;
    if (i > 0) {
      EXPECT_LT(notes[i - 1].last, notes[i].first);
    }
  }
  EXPECT_EQ(FindNotes(take.sound, {.count = 4}).size(), 4U);
  std::vector<size_t> places = take.onsets;
  places.push_back(static_cast<size_t>(9.4 * kRate));  // silent
  const auto placed = FindNotesAt(take.sound, places, 2000);
  ASSERT_EQ(placed.size(), 9U);
  for (size_t i = 0; i < 9; ++i) EXPECT_LE(placed[i].onset, take.onsets[i]);
  EXPECT_TRUE(FindNotes({kRate, {std::vector<float>(50000)}}, {}).empty());
  for (size_t frames = 1; frames < 300; ++frames) {
    const Sound click{kRate, {std::vector<float>(frames, 0.5F)}};
    for (const NoteRange& note : FindNotes(click, {})) EXPECT_LT(note.last, frames);
  }
}

TEST(Onsets, FindsSlowNotesAfterSilenceAndClearOnesAfterUnclearOnes) {
  Sound sound = Note(220, 4, 1, 0, 0.3, 1, 0.8);
  auto& values = sound.channels[0];
  values.insert(values.begin(), static_cast<size_t>(kRate), 0.0F);
  const auto slow = FindNotes(sound, {});
  ASSERT_EQ(slow.size(), 1U);
  EXPECT_NEAR(static_cast<double>(slow[0].onset), kRate, 0.01 * kRate);
  // A quiet note 0.1 s before a loud one.
  for (const auto& [at, amplitude] : {std::pair{2.9, 0.03}, std::pair{3.0, 0.5}}) {
    const Sound note = Note(500, 1, 1, 0, amplitude, 1, 0.002);
    const auto first = static_cast<size_t>(at * kRate);
    for (size_t i = 0; i < note.Frames(); ++i) values[first + i] += note.channels[0][i];
  }
  const auto counted = FindNotes(sound, {.count = 2});
  ASSERT_EQ(counted.size(), 2U);
  EXPECT_NEAR(static_cast<double>(counted[1].onset), 3 * kRate, 0.01 * kRate);
}

TEST(RootPitch, CorrectsTracksThatAreOctavesOff) {
  for (const double hertz : {41.2, 110.0, 440.0, 1760.0}) {
    const Sound sound = Note(hertz, 1, 2);
    for (const double factor : {0.5, 1.0, 2.0, 3.0}) {
      const std::vector<float> track(sound.Frames() / kTrackBlock,
                                     static_cast<float>(factor * kRate / hertz));
      std::string reason;
      const auto root = FindRootPitch(sound, track, reason);
      ASSERT_TRUE(root) << reason;
      EXPECT_NEAR(1200 * std::log2(root->hertz / hertz), 0, 2) << hertz << " * " << factor;
      EXPECT_TRUE(root->sure);
    }
  }
  // A silent channel does not count.
  Sound oneSided = Note(220, 1, 2);
  std::fill(oneSided.channels[1].begin(), oneSided.channels[1].end(), 0.0F);
  std::string reason;
  const std::vector<float> track(oneSided.Frames() / kTrackBlock, 200.0F);
  EXPECT_NEAR(FindRootPitch(oneSided, track, reason)->hertz, 220, 0.1);
  EXPECT_FALSE(FindRootPitch(Note(440, 0.05, 1), {}, reason));
  EXPECT_EQ(reason, "2205 frames are too few for a pitch");
}

// Above the tracker's range: the track has other multiples of the period and gaps.
TEST(RootPitch, FindsHighNotesThatFadeQuickly) {
  std::mt19937 random(3);
  std::normal_distribution<double> noise;
  std::string reason;
  for (const double hertz : {2700.0, 3580.0, 4256.0}) {
    Sound sound{kRate, {std::vector<float>(2 * 44100), std::vector<float>(2 * 44100)}};
    std::vector<float> track(sound.Frames() / kTrackBlock);
    for (size_t i = 0; i < sound.Frames(); ++i) {
      const double t = static_cast<double>(i) / kRate;
      const double knock = 0.2 * std::exp(-50 * t) * noise(random);
      const double rumble = 0.06 * std::exp(-2 * t) * std::sin(kTurn * 100 * t);
      const double note = std::exp(-12 * t) * std::sin(kTurn * hertz * t);
      sound.channels[0][i] = static_cast<float>(0.01 * (note + knock + rumble));
    }
    for (size_t b = 0; b < track.size() / 12; ++b) {
      track[b] = static_cast<float>(static_cast<double>(2 + b % 3) * kRate / hertz);
    }
    for (const auto& given : {track, std::vector<float>(track.size())}) {
      const auto root = FindRootPitch(sound, given, reason);
      ASSERT_TRUE(root) << reason;
      EXPECT_NEAR(1200 * std::log2(root->hertz / hertz), 0, 3) << hertz;
      EXPECT_TRUE(root->sure) << hertz;
    }
  }
  const Sound low = Note(100, 1, 1);
  EXPECT_FALSE(FindRootPitch(low, std::vector<float>(low.Frames() / kTrackBlock), reason));
}

}  // namespace
}  // namespace zyl::test
