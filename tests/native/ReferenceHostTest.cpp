#include "host/ReferenceHost.h"

#include <gtest/gtest.h>

using namespace SASM;

namespace {

const char16_t kSettings[] =
    u"FilenamesAX a.ocx; Host { PayloadPath \"C:\\Setup\\payload.bin\"; ActiveXFiles Ctl.ocx Helper.exe;"
    u" OsClass 3; ConflictCheckIsOptional true; }";

}  // namespace

TEST(ReferenceHost, AnswersFromTheHostBlockOfItsSettings) {
  ReferenceHost host(HostOptions{}, MString(kSettings));
  MString payload, control, helper;
  EXPECT_EQ(host.GetPayloadPath(payload).ToUtf8(), "C:\\Setup\\payload.bin");
  host.GetBrowserPaths(control, helper);
  EXPECT_EQ(control.ToUtf8(), "Ctl.ocx");
  EXPECT_EQ(helper.ToUtf8(), "Helper.exe");
  EXPECT_EQ(host.GetOsClass(), 3u);
  EXPECT_TRUE(host.ConflictCheckIsOptional());
  // Values the file leaves out fall back to an ordinary install.
  EXPECT_TRUE(host.ConflictsBlockInstall());
  MString plugin, pluginHelper;
  host.GetPluginPaths(plugin, pluginHelper);
  EXPECT_TRUE(plugin.IsEmpty());
}

TEST(ReferenceHost, KeepsEveryReportAndFormatsTheLog) {
  ReferenceHost host(HostOptions{}, MString(u""));
  host.ReportMessage(0, 0, 18, MString::Empty());
  host.ReportMessage(0, 1, 1015, MString(u"C:\\a.dll 20"));
  EXPECT_EQ(host.Log().Count(), 2);
  EXPECT_EQ(host.FormatLog(), "Info 18\nWarning 1015: C:\\a.dll 20\n");
}

TEST(ReferenceHost, FlagsAndSourceComeFromTheCommandLine) {
  HostOptions options;
  ASSERT_TRUE(options.Parse({u"-npapi", u"-source", u"12"}));
  ReferenceHost host(options, MString(u""));
  EXPECT_EQ(host.GetFlags(), 16u);
  EXPECT_EQ(host.GetInstallSource(), 12u);
}
