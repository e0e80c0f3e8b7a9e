#pragma once
// Severities and message codes reported through HostCallbacks::ReportMessage.
#include <cstdint>

namespace SASM {

namespace Severity {
constexpr int32_t kInfo = 0;
constexpr int32_t kLogged = 1;
constexpr int32_t kUserMustKnow = 2;
}  // namespace Severity

namespace ErrorCode {
constexpr int32_t kStopPlayers = 18;
constexpr int32_t kTestFileLocked = 20;
// Information from the notifier task and the service stop.
constexpr int32_t kTaskRefreshed = 30;
constexpr int32_t kTaskCreated = 31;
constexpr int32_t kWorkItemRefreshed = 32;
constexpr int32_t kWorkItemCreated = 33;
constexpr int32_t kServiceStopped = 35;
constexpr int32_t kSessionChosen = 36;
constexpr int32_t kSessionsListed = 37;
constexpr int32_t kSessionExamined = 39;
constexpr int32_t kSessionActive = 40;
constexpr int32_t kSessionNotActive = 41;
// Returned by CheckInstallAllowed, not reported.
constexpr int32_t kVersionRefusedMode1 = 1013;
constexpr int32_t kFileNotDeleted = 1015;
constexpr int32_t kProductKeyNotDeleted = 1017;
constexpr int32_t kPathsNotRead = 1018;
constexpr int32_t kNoPlayerPath = 1019;
constexpr int32_t kNoUninstallerPath = 1020;
constexpr int32_t kRegistryCleanFailed = 1021;
constexpr int32_t kRegisterServerFailed = 1032;
constexpr int32_t kControlNotLoaded = 1033;
constexpr int32_t kRegisterServerMissing = 1034;
constexpr int32_t kRegistryWriteFailed = 1035;
constexpr int32_t kRegistryReadFailed = 1036;
constexpr int32_t kRegistryDeleteFailed = 1037;
// Tested for by the failure panel; never reported by this module.
constexpr int32_t kInstallerAttention1 = 1040;
constexpr int32_t kInstallerAttention2 = 1044;
constexpr int32_t kRebootDeleteFailed = 1045;
constexpr int32_t kLockedFileEmpty = 1046;
constexpr int32_t kLockedSystemFileQueued = 1047;
constexpr int32_t kSystemFileNotRemoved = 1048;
constexpr int32_t kUpdateServiceRemovalFailed = 1100;
constexpr int32_t kServiceManagerNotOpened = 1101;
constexpr int32_t kServiceNotOpened = 1102;
constexpr int32_t kNotifierTaskStarted = 1106;
constexpr int32_t kDirectoryListingFailed = 1113;
constexpr int32_t kServiceCommandFailed = 1118;
constexpr int32_t kReleaseTypeMismatch = 1161;
constexpr int32_t kVersionRefused = 1162;
constexpr int32_t kFeedbackServiceRemovalFailed = 1738;
constexpr int32_t kServiceUninstallNotStarted = 1739;
constexpr int32_t kFeedbackServiceNotStopped = 1741;
constexpr int32_t kServiceStateNotRead = 1743;
constexpr int32_t kServiceStoppedWhileWaiting = 1744;
constexpr int32_t kServiceStopTimedOut = 1745;
constexpr int32_t kTaskUserWithoutDomain = 1746;
constexpr int32_t kTaskUserUnknown = 1747;
constexpr int32_t kSessionUserNotRead = 1752;
constexpr int32_t kSessionDomainNotRead = 1753;
constexpr int32_t kSessionsNotListed = 1754;
constexpr int32_t kSessionStateNotRead = 1755;
// An operation of the shim that this build does not provide yet.
constexpr int32_t kNotAvailable = 1999;
}  // namespace ErrorCode

// Ids of the module's string table used by the engine.
namespace StringId {
constexpr uint32_t kNoErrorInformation = 51;
constexpr uint32_t kUninstallerAttention = 75;
constexpr uint32_t kInstallerAttention = 76;
constexpr uint32_t kUninstallerTitle = 30;
}  // namespace StringId

}  // namespace SASM
