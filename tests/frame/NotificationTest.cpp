// Notifications of registered modules, and callbacks that change or delete what is in use.
#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

class Notification : public ModuleTest {
 protected:
  Notification() { program.Make(); }
  // A module that appends its notifications to `received`.
  std::unique_ptr<Listener> Recorder(const std::string& mark = "") {
    auto module = std::make_unique<Listener>();
    (*module)["OnProgramParameterChanged"] = [mark, this](ROCParams& list, ROCParam**) {
      EXPECT_EQ(list.Entry(0)->Object(), program.Algo());
      received += mark;
      for (int i = 1; i < list.count; ++i) received += std::to_string(list.Entry(i)->Int()) + " ";
    };
    (*module)["OnDeletingPrg"] = [mark, this](ROCParams& list, ROCParam**) {
      EXPECT_EQ(list.Entry(0)->Object(), program.Algo());
      received += mark + "end ";
    };
    return module;
  }
  Program program;
  std::string received;
};

TEST_F(Notification, ChangesNotifyOnceInOrderWhileEnabled) {
  const auto first = Recorder("a:"), second = Recorder("b:");
  for (Listener* one : {first.get(), second.get(), first.get()}) {
    EXPECT_EQ(program("Register", one).result, nullptr);
  }
  for (int i = 0; i < 2; ++i) program("PRGpoly", 20);  // the second one changes nothing
  EXPECT_EQ(std::exchange(received, {}), "a:4 20 -1 -1 b:4 20 -1 -1 ");
  EXPECT_TRUE(program("EnableRegisterCall", false).Bool());
  program("PRGpoly", 21);
  EXPECT_FALSE(program("EnableRegisterCall", true).Bool());
  program("PrepareDelete");
  program.Delete();
  EXPECT_EQ(received, "a:end b:end ") << "only PrepareDelete sends OnDeletingPrg";
}

TEST_F(Notification, DeletedModulesAreSkipped) {
  auto dead = Recorder("dead:");
  const auto replaced = Recorder("replaced:"), alive = Recorder("alive:");
  for (Listener* one : {dead.get(), replaced.get(), alive.get()}) program("Register", one);
  dead.reset();
  replaced->SetDispatch(nullptr);
  program("PrepareDelete");
  program("PRGpoly", 20);
  EXPECT_EQ(received, "alive:end alive:4 20 -1 -1 ");
}

TEST_F(Notification, CallbacksMayRegisterAndDeleteModules) {
  const auto late = Recorder("late:");
  auto victim = Recorder("victim:");
  Listener busy;
  busy["OnProgramParameterChanged"] = [&](ROCParams&, ROCParam**) {
    EXPECT_TRUE(program("Register", late.get()).Ok());
    victim.reset();
  };
  program("Register", &busy);
  program("Register", victim.get());
  EXPECT_EQ(program("PRGpoly", 20).Int(), 15);
  EXPECT_EQ(received, "late:4 20 -1 -1 ")
      << "a module registered during the iteration is called too";
}

// The nested change removes the entries of the module that is being called and of its neighbours;
// an empty list frees its nodes.
TEST_F(Notification, NestedChangesMayRemoveEntriesOfTheOuterIteration) {
  for (const bool alone : {false, true}) {
    program = Program();
    program.Make();
    received.clear();
    auto before = std::make_unique<Listener>();
    auto after = std::make_unique<Listener>();
    const auto last = Recorder();
    Listener busy;
    busy["OnProgramParameterChanged"] = [&](ROCParams&, ROCParam**) {
      before.reset();
      after.reset();
      busy.SetDispatch(nullptr);
      program("PRGmidiChannel", 6);
      program("Register", last.get());
    };
    for (Listener* one : {before.get(), &busy, after.get(), last.get()}) {
      if (one == &busy || !alone) program("Register", one);
    }
    program("PRGpoly", 20);
    EXPECT_EQ(received, alone ? "4 20 -1 -1 " : "3 6 -1 -1 4 20 -1 -1 ");
  }
}

TEST_F(Notification, CallbacksMayDeleteTheRecordOrTheProgram) {
  WriteWave(Path("a.wav"), {{1, 2, 3}});
  const std::function<void(const Program&)> calls[] = {
      [](const Program& p) { p("PRGpoly", 20); },
      [](const Program& p) { p("PRGindyOutput", 3); },
      [](const Program& p) { p("PRGmidiChannel", 3); },
      [](const Program& p) { p("PRGkeyGroups", 300); },
      [](const Program& p) { p("ZoneSampleSet", 0, 0); },
      [](const Program& p) { p("PrepareDelete"); },
  };
  for (const auto& call : calls) {
    for (const bool wholeObject : {false, true}) {
      Program doomed;
      doomed.Make();
      doomed("ZoneSampleSet", 0, 0, Path("a.wav"));
      doomed("SampleGet", 0, 0);
      bool deleted = false;
      Listener listener;
      for (const char* name : {"OnProgramParameterChanged", "OnDeletingSmpl", "OnDeletingPrg"}) {
        listener[name] = [&](ROCParams&, ROCParam**) {
          if (std::exchange(deleted, true)) return;
          const int held = getTotalMem();
          wholeObject ? doomed.Delete() : void(doomed("Read", "no such file"));
          EXPECT_EQ(getTotalMem() == held, wholeObject) << "it was freed while its method ran";
        };
      }
      doomed("Register", &listener);
      call(doomed);
      EXPECT_TRUE(deleted && (wholeObject || !doomed("IsValid").Bool()));
    }
  }
  program.Delete();
  EXPECT_EQ(getTotalMem(), 0) << "an object deleted during a call leaked";
}

}  // namespace
}  // namespace zyl::test
