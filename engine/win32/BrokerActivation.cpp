#include "engine/win32/BrokerActivation.h"

#include "broker/BrokerIdentities.h"
#include "broker/BrokerRegistration.h"
#include "engine/win32/ScopedRegKey.h"
#include "engine/win32/WideText.h"
#include "engine/win32/Win32Registry.h"

namespace SASM {
namespace {

// The registration's values are narrow strings, as installation writes them.
std::string Narrow(const std::wstring& text) {
  int n = WideCharToMultiByte(CP_ACP, 0, text.c_str(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
  std::string out(static_cast<size_t>(n > 0 ? n : 0), '\0');
  WideCharToMultiByte(CP_ACP, 0, text.c_str(), static_cast<int>(text.size()), out.data(), n, nullptr, nullptr);
  return out;
}

// Deletes a key of the machine's classes in both registry views: Wine falls
// back to the 32-bit copies when the 64-bit key is gone.
void DeleteBothViews(const std::wstring& path) {
  for (REGSAM view : {KEY_WOW64_64KEY, KEY_WOW64_32KEY}) {
    ScopedRegKey key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Classes", 0, KEY_ALL_ACCESS | view, key.receive()) ==
        ERROR_SUCCESS)
      RegDeleteTreeW(key.get(), path.c_str());
  }
}

}  // namespace

HRESULT BrokerActivation::Activate(ComPtr<ILumenBroker6>& broker) {
  return WithRetries([&] {
    return CoCreateInstance(CLSID_LumenBrokerImp6, nullptr, CLSCTX_LOCAL_SERVER, IID_ILumenBroker6,
                            broker.receiveVoid());
  });
}

void BrokerActivation::Register(const std::wstring& serverPath) {
  Win32Registry registry;
  BrokerRegistration::WriteBrokerRegistration(registry, Narrow(serverPath).c_str(), true);
}

void BrokerActivation::Unregister() {
  Win32Registry registry;
  BrokerRegistration::WriteBrokerRegistration(registry, nullptr, false);
  DeleteBothViews(L"CLSID\\" + ToWide(BrokerIdentities::kServed.classId));
  DeleteBothViews(L"TypeLib\\" + ToWide(BrokerIdentities::kLibraryId));
  for (const BrokerGeneration& generation : BrokerIdentities::kGenerations)
    DeleteBothViews(L"Interface\\" + ToWide(generation.interfaceId));
}

}  // namespace SASM
