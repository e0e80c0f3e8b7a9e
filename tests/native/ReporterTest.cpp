#include "engine/Reporter.h"

#include <gtest/gtest.h>

#include <vector>

#include "host/ReferenceHost.h"

using namespace SASM;

namespace {

struct Report {
  int64_t reserved;
  int32_t severity;
  int32_t code;
  std::u16string text;
};

// Keeps every report whole, its first argument too.
class RecordingHost : public ReferenceHost {
 public:
  RecordingHost() : ReferenceHost(HostOptions{}, MString(u"")) {}
  void ReportMessage(int64_t reserved, int32_t severity, int32_t code, MString text) override {
    reports.push_back({reserved, severity, code, text.ToU16()});
  }
  const std::u16string& LastText() const { return reports.back().text; }
  std::vector<Report> reports;
};

const MString kPath(u"C:\\dir\\file.dll");
const MString kKey(u"Software\\Halcyonics");

}  // namespace

TEST(Reporter, PassesSeverityCodeAndAZeroFirstArgument) {
  RecordingHost host;
  Reporter::Report(host, 2, 1017);
  ASSERT_EQ(host.reports.size(), 1u);
  EXPECT_EQ(host.reports[0].reserved, 0);
  EXPECT_EQ(host.reports[0].severity, 2);
  EXPECT_EQ(host.reports[0].code, 1017);
  EXPECT_TRUE(host.LastText().empty());
  Reporter::ReportPath(host, 0, 20, kPath);
  EXPECT_EQ(host.LastText(), u"C:\\dir\\file.dll");
}

TEST(Reporter, ErrorsAreUpperCaseHexadecimalWithoutPrefixUnlessDecimal) {
  RecordingHost host;
  Reporter::ReportPathError(host, 1, 1113, kPath, 0x8007000Au);
  EXPECT_EQ(host.LastText(), u"C:\\dir\\file.dll 8007000A");
  Reporter::ReportBlankError(host, 1, 1738, 0x1F);
  EXPECT_EQ(host.LastText(), u" 1F");
  Reporter::ReportPathErrorDecimal(host, 1, 1045, kPath, 32);
  EXPECT_EQ(host.LastText(), u"C:\\dir\\file.dll 32");
  Reporter::ReportErrorDecimal(host, 1, 1739, 1223);
  EXPECT_EQ(host.LastText(), u"1223");
}

TEST(Reporter, KeyFormsJoinWithSlashAndTheNumberFormHasNoBlank) {
  RecordingHost host;
  Reporter::ReportKeyValueError(host, 1, 1036, kKey, MString(u"Version"), 2);
  EXPECT_EQ(host.LastText(), u"Software\\Halcyonics/Version 2");
  Reporter::ReportKeyValueErrorNumberForm(host, 1, 1035, kKey, MString(u"Flags"), 0x3E);
  EXPECT_EQ(host.LastText(), u"Software\\Halcyonics/Flags3E");
  Reporter::ReportKeyError(host, 1, 1037, kKey, 5);
  EXPECT_EQ(host.LastText(), u"Software\\Halcyonics/ 5");
}
