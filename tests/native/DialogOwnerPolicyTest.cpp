// Which client windows may own what the server shows: installed programs and
// a few browser images by name, nothing without a live window and process.
#include "broker/DialogOwnerPolicy.h"

#include <gtest/gtest.h>

#include "tests/fakes/FakePathPlatform.h"
#include "tests/fakes/FakeProcesses.h"

using namespace SASM;
using Source = IProcesses::IdentitySource;

namespace {

void* Window(uintptr_t value) { return reinterpret_cast<void*>(value); }

class DialogOwnerPolicyTest : public ::testing::Test {
 protected:
  DialogOwnerPolicyTest() {
    paths.SetFolder(38, u"C:\\Program Files");
    paths.SetFolder(42, u"C:\\Program Files (x86)\\");
  }

  // A window of its own process, running the image.
  bool Allowed(std::u16string image, Source source = Source::kFirstModule) {
    uint32_t id = ++lastId;
    processes.AddImage(id, std::move(image));
    processes.SetIdentitySource(id, source);
    processes.AddWindow(Window(0x1000 + id), id);
    return policy.IsDialogOwnerAllowed(0x1000 + id);
  }

  FakePathPlatform paths;
  FakeProcesses processes;
  DialogOwnerPolicy policy{paths, processes};
  uint32_t lastId = 0;
};

}  // namespace

TEST_F(DialogOwnerPolicyTest, ProgramsUnderEitherProgramFilesFolderOwnDialogsAndAMissingFolderOnlyTakesItsOwnPlace) {
  EXPECT_TRUE(Allowed(u"C:\\Program Files\\Browser\\browser.exe"));
  EXPECT_TRUE(Allowed(u"c:\\program files (x86)\\Browser\\browser.exe"));
  // A folder whose name only begins like it is somewhere else.
  EXPECT_FALSE(Allowed(u"C:\\Program Files Evil\\browser.exe"));
  EXPECT_FALSE(Allowed(u"C:\\Users\\a\\Downloads\\browser.exe"));

  paths.SetFolder(42, u"");
  EXPECT_FALSE(Allowed(u"C:\\Program Files (x86)\\Browser\\browser.exe"));
  EXPECT_TRUE(Allowed(u"C:\\Program Files\\Browser\\browser.exe"));
}

TEST_F(DialogOwnerPolicyTest, FourBrowserImagesAreAllowedByNameFromAnywhere) {
  EXPECT_TRUE(Allowed(u"C:\\Windows\\SystemApps\\MicrosoftEdge.exe"));
  EXPECT_TRUE(Allowed(u"C:\\Windows\\SystemApps\\Spartan_Edge.exe"));
  EXPECT_FALSE(Allowed(u"C:\\Windows\\SystemApps\\spartan.exe.bak"));
  // Across processor widths the name comes from the image path alone.
  EXPECT_TRUE(Allowed(u"D:\\apps\\spartan.exe", Source::kImageName));
}

TEST_F(DialogOwnerPolicyTest, NoWindowNoProcessOrAnUnreadableProcessIsRefused) {
  EXPECT_FALSE(policy.IsDialogOwnerAllowed(0));
  // A handle that is no window.
  EXPECT_FALSE(policy.IsDialogOwnerAllowed(0x4242));
  EXPECT_FALSE(Allowed(u"C:\\Program Files\\Browser\\browser.exe", Source::kNothing));
  processes.Add(77, u"");
  processes.AddWindow(Window(0x77), 77);
  EXPECT_FALSE(policy.IsDialogOwnerAllowed(0x77));
}

