#include "broker/win32/Win32FileProtectionQuery.h"

#include "broker/BrokerFileProtectionInfo.h"
#include "broker/win32/EnterpriseDataAbi.h"
#include "broker/win32/ProtectionQueryHandler.h"
#include "broker/win32/ScopedHString.h"
#include "engine/win32/ComPtr.h"

namespace SASM {

namespace {

using namespace EnterpriseDataAbi;

HRESULT OnProtectionInfo(AsyncOperation& operation, BrokerFileProtectionInfo& info) {
  ComPtr<IInspectable> result;
  if (FAILED(operation.GetResults(result.receive())) || !result) return E_FAIL;
  ComPtr<FileProtectionInfo> protection;
  if (FAILED(result->QueryInterface(kFileProtectionInfoIid, protection.receiveVoid()))) return E_FAIL;
  int32_t status = 0;
  if (FAILED(protection->get_Status(&status))) return E_FAIL;
  if (!BrokerFileProtectionInfo::IsProtectedStatus(status)) return E_FAIL;
  ScopedHString identity;
  if (FAILED(protection->get_Identity(identity.receive()))) return E_FAIL;
  info.OnProtectionStatus(status, identity.Text());
  return S_OK;
}

HRESULT OnStorageFile(AsyncOperation& operation, BrokerFileProtectionInfo& info) {
  ComPtr<IInspectable> file;
  if (FAILED(operation.GetResults(file.receive())) || !file) return E_FAIL;
  ComPtr<IInspectable> item;
  if (FAILED(file->QueryInterface(kStorageItemIid, item.receiveVoid()))) return E_FAIL;
  ComPtr<FileProtectionManagerStatics> manager;
  if (FAILED(ScopedHString::GetActivationFactory(Win32FileProtectionQuery::kFileProtectionManagerClass,
                                                 kFileProtectionManagerStaticsIid, manager.receiveVoid()))) {
    return E_FAIL;
  }
  ComPtr<AsyncOperation> query;
  if (FAILED(manager->GetProtectionInfoAsync(item.get(), query.receive())) || !query) return E_FAIL;
  // Before the handler goes on: it may answer, and end the wait, at once.
  info.OnQueryRunning();
  return ProtectionQueryHandler::Attach(*query.get(), kProtectionInfoHandlerIid, &OnProtectionInfo, info) ? S_OK
                                                                                                          : E_FAIL;
}

void JoinMultithreadedApartment() {
  // Never left: answers arrive on the apartment's threads after the job returns.
  static thread_local bool joined = false;
  if (!joined) joined = SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED));
}

}  // namespace

void Win32FileProtectionQuery::Start(const wchar_t* path, BrokerFileProtectionInfo& info) {
  JoinMultithreadedApartment();
  ScopedHString pathString(path);
  ComPtr<StorageFileStatics> files;
  ComPtr<AsyncOperation> open;
  bool started = pathString.get() &&
                 SUCCEEDED(ScopedHString::GetActivationFactory(kStorageFileClass, kStorageFileStaticsIid,
                                                               files.receiveVoid())) &&
                 SUCCEEDED(files->GetFileFromPathAsync(pathString.get(), open.receive())) && open &&
                 ProtectionQueryHandler::Attach(*open.get(), kStorageFileHandlerIid, &OnStorageFile, info);
  if (!started) info.OnQueryFailed();
}

}  // namespace SASM
