#pragma once
// The runtime interfaces the protection query and the consent request use,
// reduced to the slots they call, in their published layouts. A parameterised
// interface's identifier is derived from its type arguments; the handler
// identifiers are those for StorageFile, FileProtectionInfo and
// ProtectionPolicyEvaluationResult.
#include "engine/win32/WindowsApi.h"

#include <inspectable.h>
#include <winstring.h>

#include <cstdint>

namespace SASM::EnterpriseDataAbi {

inline constexpr IID kStorageFileStaticsIid = {
    0x5984c710, 0xdaf2, 0x43c8, {0x8b, 0xb4, 0xa4, 0xd3, 0xea, 0xcf, 0xd0, 0x3f}};
inline constexpr IID kStorageItemIid = {0x4207a996, 0xca2f, 0x42f7, {0xbd, 0xe8, 0x8b, 0x10, 0x45, 0x7a, 0x7f, 0x30}};
inline constexpr IID kFileProtectionManagerStaticsIid = {
    0x5846fc9b, 0xe613, 0x426b, {0xbb, 0x38, 0x88, 0xcb, 0xa1, 0xdc, 0x9a, 0xdb}};
inline constexpr IID kFileProtectionInfoIid = {
    0x4ee96486, 0x147e, 0x4dd0, {0x8f, 0xaf, 0x52, 0x53, 0xed, 0x91, 0xad, 0x0c}};
inline constexpr IID kStorageFileHandlerIid = {
    0xe521c894, 0x2c26, 0x5946, {0x9e, 0x61, 0x2b, 0x5e, 0x18, 0x8d, 0x01, 0xed}};
inline constexpr IID kProtectionInfoHandlerIid = {
    0x2918ffea, 0xe091, 0x53e2, {0xbd, 0xe5, 0x61, 0x7c, 0x9b, 0xb3, 0xd8, 0xfe}};
inline constexpr IID kAgileObjectIid = {0x94ea2b94, 0xe9cc, 0x49e0, {0xc0, 0xff, 0xee, 0x64, 0xca, 0x8f, 0x5b, 0x90}};

// The consent request of the audited open: the policy manager's window
// interop, the audit record's factory, and the operation that carries a
// ProtectionPolicyEvaluationResult and its handler.
inline constexpr IID kProtectionPolicyManagerInterop2Iid = {
    0x157cfbe4, 0xa78d, 0x4156, {0xb3, 0x84, 0x61, 0xfd, 0xac, 0x41, 0xe6, 0x86}};
inline constexpr IID kProtectionPolicyAuditInfoFactoryIid = {
    0x7ed4180b, 0x92e8, 0x42d5, {0x83, 0xd4, 0x25, 0x44, 0x0b, 0x42, 0x35, 0x49}};
inline constexpr IID kEvaluationOperationIid = {
    0xe8d81715, 0xc56c, 0x5a6b, {0xb7, 0x38, 0x5d, 0xf6, 0xc2, 0x77, 0x5b, 0x7b}};
inline constexpr IID kEvaluationHandlerIid = {
    0x2833ba54, 0xa4e1, 0x5c2d, {0x8a, 0x7a, 0x13, 0x6e, 0x85, 0x10, 0xc7, 0x8b}};

// AsyncStatus.Completed.
inline constexpr int32_t kAsyncCompleted = 1;
// ProtectionPolicyAuditAction.Other and ProtectionPolicyEvaluationResult.Allowed.
inline constexpr int32_t kAuditActionOther = 3;
inline constexpr int32_t kEvaluationAllowed = 0;

// AsyncOperationCompletedHandler<T>; the operation arrives as its own interface.
struct AsyncHandler : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke(IInspectable* operation, int32_t status) = 0;
};

// IAsyncOperation<T>, with the result as the interface it arrives as.
struct AsyncOperation : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE put_Completed(AsyncHandler* handler) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Completed(AsyncHandler** handler) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetResults(IInspectable** results) = 0;
};

struct StorageFileStatics : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE GetFileFromPathAsync(HSTRING path, AsyncOperation** operation) = 0;
};

struct FileProtectionManagerStatics : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE ProtectAsync(IInspectable* target, HSTRING identity, AsyncOperation** result) = 0;
  virtual HRESULT STDMETHODCALLTYPE CopyProtectionAsync(IInspectable* source, IInspectable* target,
                                                        AsyncOperation** result) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetProtectionInfoAsync(IInspectable* source, AsyncOperation** result) = 0;
};

struct FileProtectionInfo : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_Status(int32_t* status) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_IsRoamable(boolean* roamable) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Identity(HSTRING* identity) = 0;
};

// IAsyncOperation<ProtectionPolicyEvaluationResult>: the result is a plain value.
struct EvaluationOperation : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE put_Completed(AsyncHandler* handler) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Completed(AsyncHandler** handler) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetResults(int32_t* result) = 0;
};

struct ProtectionPolicyAuditInfoFactory : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE Create(int32_t action, HSTRING dataDescription, HSTRING sourceDescription,
                                           HSTRING targetDescription, IInspectable** info) = 0;
};

struct ProtectionPolicyManagerInterop2 : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE RequestAccessForAppWithWindowAsync(HWND window, HSTRING sourceIdentity,
                                                                       HSTRING appPackageFamilyName, REFIID riid,
                                                                       void** operation) = 0;
  virtual HRESULT STDMETHODCALLTYPE RequestAccessWithAuditingInfoForWindowAsync(HWND window, HSTRING sourceIdentity,
                                                                                HSTRING targetIdentity,
                                                                                IUnknown* auditInfo, REFIID riid,
                                                                                void** operation) = 0;
};

}  // namespace SASM::EnterpriseDataAbi
