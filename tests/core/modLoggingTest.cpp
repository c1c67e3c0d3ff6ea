#include "core/modLogging.h"

#include "support/TestWorld.h"

namespace kvr {
namespace {

TEST(modLoggingTest, TracesNameTheFailingProcedure) {
  ActivityLog log;
  EXPECT_EQ(TraceTop(), "");
  const TraceScope outer("modMain:Export");
  const bool succeeded = LogFailure(log, [&log] {
    const TraceScope inner("modMain:Inner", &log);
    throw KVRError(ErrorNumber::MissingKey, "no such key");
  });
  EXPECT_FALSE(succeeded);
  EXPECT_TRUE(LogFailure(log, [] {}));
  EXPECT_EQ(TraceTop(), "modMain:Export");
  ASSERT_EQ(log.Lines().size(), 3u);
  EXPECT_EQ(log.Lines()[0].text, "modMain:Inner: STARTS");
  EXPECT_EQ(log.Lines()[1].text, "modMain:Inner: ENDS");
  EXPECT_EQ(log.Lines()[2].text, "modMain:Export: Error 5: no such key");
  EXPECT_EQ(log.Lines()[2].level, LogLevel::Red);
  EXPECT_THROW(LogFailure(log, [] { throw SolverFailure("ends the command"); }), SolverFailure);
}

TEST(modLoggingTest, IndentsAndKeepsTheLastLines) {
  ActivityLog log;
  log.Outdent();
  {
    const IndentScope one(log), two(log);
    log.LogIndented("deep");
  }
  log.LogIndented("flat");
  EXPECT_EQ(log.Lines()[0].text, "    deep");
  EXPECT_EQ(log.Lines()[1].text, "flat");
  for (int i = 0; i < 40000; ++i) log.Indent();
  EXPECT_LE(log.IndentText().size(), 32767u);
  for (int i = 1; i <= 3000; ++i) log.LogLine(std::to_string(i));
  EXPECT_EQ(log.Lines().size(), 2001u);
  EXPECT_EQ(log.Lines().front().text, "1000");
  EXPECT_EQ(log.Lines().back().text, "3000");
}

TEST(modLoggingTest, EchoesToAFileWhileDebugIsOn) {
  TestWorld world;
  const std::string file = world.Write("debug.run", "of an earlier run");
  ActivityLog log;
  log.Start(true, file);
  EXPECT_FALSE(Files::FileExists(file));
  log.LogLine("one");
  log.LogRed("two");
  EXPECT_EQ(world.Read("debug.run"), "one\r\ntwo\r\n");
  log.Start(false, file);
  log.LogRed("three");
  EXPECT_EQ(log.Lines().size(), 2u);
  EXPECT_EQ(world.Read("debug.run"), "one\r\ntwo\r\n") << "the last log is not lost to a run without one";
  log.Start(true, world.Path("no such folder\\debug.run"));
  log.LogLine("four");
  EXPECT_EQ(log.Lines().back().text, "four") << "a file that cannot be written harms nothing";
}

}  // namespace
}  // namespace kvr
