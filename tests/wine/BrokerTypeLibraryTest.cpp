// The broker's type library as COM reads it from the module and the host, and
// the generated C++ declarations that the server implements.
#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "LumenBroker_h.h"
#include "tests/wine/WineTestSupport.h"

using namespace SASM;
using Microsoft::WRL::ComPtr;

namespace {

constexpr const wchar_t* kLibraryId = L"{FAB3E735-69C7-453B-A446-B6823C6DF1C9}";

struct Generation {
  const wchar_t* interfaceName;
  const wchar_t* interfaceId;
  const wchar_t* className;
  const wchar_t* classId;
  MEMBERID firstId;
  const wchar_t* firstMethod;
  const wchar_t* lastMethod;
  UINT methods;
};

constexpr Generation kGenerations[] = {
    {L"ILumenBroker", L"{2E4BB6BE-A75F-4DC0-9500-68203655A2C4}", L"LumenBrokerImp",
     L"{D4304BCF-B8E9-4B35-BEA0-DC5B522670C2}", 0x60020000, L"BrokerCreateFile", L"BrokerLMIsRunning", 34},
    {L"ILumenBroker2", L"{DDF4CE26-4BDA-42BC-B0F0-0E75243AD285}", L"LumenBrokerImp2",
     L"{0BE09CC1-42E0-11DD-AE16-0800200C9A66}", 0x60030000, L"BrokerDelayScreensaver",
     L"BrokerPrefDeleteLumenPlayerVersion", 3},
    {L"ILumenBroker3", L"{1D4C8A81-B7AC-460A-8C23-98713C41D6B3}", L"LumenBrokerImp3",
     L"{19114156-8E9A-4D4E-9EE9-17A0E48D3BBB}", 0x60040000, L"BrokerSaveDialog", L"BrokerIMLangFontLinkReleaseFont",
     49},
    {L"ILumenBroker4", L"{E3F2C3CB-5EB8-4A04-B22C-7E3B4B6AF30F}", L"LumenBrokerImp4",
     L"{A483C63A-CDBC-426E-BF93-872502E8144E}", 0x60050000, L"BrokerLcdMessageTimeout", L"BrokerGetDirectInputCount",
     5},
    {L"ILumenBroker5", L"{6AE38AE0-750C-11E1-B0C4-0800200C9A66}", L"LumenBrokerImp5",
     L"{73C9DFA0-750D-11E1-B0C4-0800200C9A66}", 0x60060000, L"BrokerIsDriveAvailable", L"BrokerIsDriveAvailable", 1},
    {L"ILumenBroker6", L"{299817DA-1FAC-4CE2-8F48-A108237013BD}", L"LumenBrokerImp6",
     L"{B019E3BF-E7E5-453C-A2E4-D2C18CA0866F}", 0x60070000, L"BrokerSaveDialog2",
     L"BrokerMMNotificationClientDestroy", 10},
};

GUID Guid(const wchar_t* text) {
  GUID guid{};
  EXPECT_EQ(CLSIDFromString(text, &guid), S_OK) << "bad guid text";
  return guid;
}

struct Method {
  std::wstring name;
  MEMBERID id = 0;
  int slot = 0;
};

// The methods an interface adds to its parent, in vtable order.
std::vector<Method> OwnMethods(ITypeInfo* info) {
  std::vector<Method> methods;
  TYPEATTR* attr = nullptr;
  if (!info || FAILED(info->GetTypeAttr(&attr))) return methods;
  WORD count = attr->cFuncs;
  info->ReleaseTypeAttr(attr);
  for (WORD i = 0; i < count; ++i) {
    FUNCDESC* func = nullptr;
    if (FAILED(info->GetFuncDesc(i, &func))) break;
    BSTR name = nullptr;
    UINT named = 0;
    info->GetNames(func->memid, &name, 1, &named);
    methods.push_back({named ? name : L"", func->memid, func->oVft / static_cast<int>(sizeof(void*))});
    SysFreeString(name);
    info->ReleaseFuncDesc(func);
  }
  return methods;
}

std::wstring Name(ITypeInfo* info) {
  BSTR name = nullptr;
  if (FAILED(info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr))) return L"";
  std::wstring text(name);
  SysFreeString(name);
  return text;
}

// Vtable slot of a virtual member function under the Itanium C++ ABI that
// MinGW's g++ uses: the pointer holds 1 + the slot's byte offset.
template <typename Member>
int VtableSlot(Member member) {
  static_assert(sizeof(member) == 2 * sizeof(std::uintptr_t));
  std::uintptr_t words[2];
  std::memcpy(words, &member, sizeof(words));
  return static_cast<int>((words[0] - 1) / sizeof(void*));
}

class BrokerTypeLibrary : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(LoadTypeLibEx(WineTest::ModulePath().c_str(), REGKIND_NONE, &library_), S_OK);
  }

  // The dispatch half of a dual interface, as GetTypeInfoOfGuid gives it.
  ComPtr<ITypeInfo> Dispatch(const wchar_t* iid) {
    ComPtr<ITypeInfo> info;
    EXPECT_EQ(library_->GetTypeInfoOfGuid(Guid(iid), &info), S_OK) << iid;
    return info;
  }

  // The vtable half, which carries the methods' slots and the parent chain.
  ComPtr<ITypeInfo> Vtable(const wchar_t* iid) {
    ComPtr<ITypeInfo> dispatch = Dispatch(iid), vtable;
    HREFTYPE ref = 0;
    if (!dispatch || FAILED(dispatch->GetRefTypeOfImplType(-1, &ref)) ||
        FAILED(dispatch->GetRefTypeInfo(ref, &vtable)))
      ADD_FAILURE() << "no vtable half for " << iid;
    return vtable;
  }

  Method Find(const wchar_t* iid, const std::wstring& name) {
    for (const Method& method : OwnMethods(Vtable(iid).Get()))
      if (method.name == name) return method;
    ADD_FAILURE() << "no method " << std::string(name.begin(), name.end());
    return {};
  }

  ComPtr<ITypeLib> library_;
};

TEST_F(BrokerTypeLibrary, LibraryAndEveryGenerationsDualInterfaceExtendingTheLastWithItsClass) {
  TLIBATTR* libraryAttr = nullptr;
  ASSERT_EQ(library_->GetLibAttr(&libraryAttr), S_OK);
  EXPECT_EQ(libraryAttr->guid, Guid(kLibraryId));
  EXPECT_EQ(libraryAttr->wMajorVerNum, 1);
  EXPECT_EQ(libraryAttr->wMinorVerNum, 0);
  EXPECT_EQ(libraryAttr->syskind, SYS_WIN64);
  library_->ReleaseTLibAttr(libraryAttr);
  EXPECT_EQ(library_->GetTypeInfoCount(), 12u);

  const wchar_t* parent = L"IDispatch";
  for (const Generation& generation : kGenerations) {
    SCOPED_TRACE(testing::Message() << generation.interfaceId);
    ComPtr<ITypeInfo> dispatch = Dispatch(generation.interfaceId);
    ASSERT_TRUE(dispatch);
    EXPECT_EQ(Name(dispatch.Get()), generation.interfaceName);
    TYPEATTR* attr = nullptr;
    ASSERT_EQ(dispatch->GetTypeAttr(&attr), S_OK);
    EXPECT_EQ(attr->typekind, TKIND_DISPATCH);
    EXPECT_TRUE(attr->wTypeFlags & TYPEFLAG_FDUAL);
    dispatch->ReleaseTypeAttr(attr);
    // The automation marshaller serves only a vtable marked for automation.
    ComPtr<ITypeInfo> vtable = Vtable(generation.interfaceId), base;
    ASSERT_TRUE(vtable);
    ASSERT_EQ(vtable->GetTypeAttr(&attr), S_OK);
    EXPECT_TRUE(attr->wTypeFlags & TYPEFLAG_FOLEAUTOMATION);
    vtable->ReleaseTypeAttr(attr);
    HREFTYPE ref = 0;
    ASSERT_EQ(vtable->GetRefTypeOfImplType(0, &ref), S_OK);
    ASSERT_EQ(vtable->GetRefTypeInfo(ref, &base), S_OK);
    EXPECT_EQ(Name(base.Get()), parent);
    parent = generation.interfaceName;

    ComPtr<ITypeInfo> coclass, defaultInterface;
    ASSERT_EQ(library_->GetTypeInfoOfGuid(Guid(generation.classId), &coclass), S_OK);
    EXPECT_EQ(Name(coclass.Get()), generation.className);
    ASSERT_EQ(coclass->GetRefTypeOfImplType(0, &ref), S_OK);
    ASSERT_EQ(coclass->GetRefTypeInfo(ref, &defaultInterface), S_OK);
    EXPECT_EQ(Name(defaultInterface.Get()), generation.interfaceName);
  }
}

TEST_F(BrokerTypeLibrary, All102MethodsFollowIDispatchWithIdsCountingUpFromEachGenerationsBase) {
  int slot = 7;  // IUnknown's three and IDispatch's four come first
  for (const Generation& generation : kGenerations) {
    std::vector<Method> methods = OwnMethods(Vtable(generation.interfaceId).Get());
    ASSERT_EQ(methods.size(), generation.methods) << generation.interfaceId;
    EXPECT_EQ(methods.front().name, generation.firstMethod);
    EXPECT_EQ(methods.back().name, generation.lastMethod);
    for (size_t i = 0; i < methods.size(); ++i) {
      EXPECT_EQ(methods[i].slot, slot++) << methods[i].name.c_str();
      EXPECT_EQ(methods[i].id, generation.firstId + static_cast<MEMBERID>(i)) << methods[i].name.c_str();
    }
  }
  EXPECT_EQ(slot, 7 + 102);
}

// The newest view resolves inherited names too; the second generation's, which
// the server answers IDispatch with, knows no later method.
TEST_F(BrokerTypeLibrary, NamesResolveThroughADispatchViewUpToItsGeneration) {
  const struct {
    int generation;
    std::vector<const wchar_t*> names;
    HRESULT result;
    std::vector<MEMBERID> ids;
  } rows[] = {
      {5, {L"BrokerCreateIconPathV2", L"p_overwrite"}, S_OK, {0x60070002, 2}},
      {5, {L"BrokerCreateFile"}, S_OK, {0x60020000}},
      {1, {L"BrokerPrefGetLumenPlayerVersion"}, S_OK, {0x60030001}},
      {1, {L"BrokerSaveDialog2"}, DISP_E_UNKNOWNNAME, {}},
  };
  for (const auto& row : rows) {
    ComPtr<ITypeInfo> view = Dispatch(kGenerations[row.generation].interfaceId);
    ASSERT_TRUE(view);
    std::vector<MEMBERID> ids(row.names.size());
    EXPECT_EQ(view->GetIDsOfNames(const_cast<OLECHAR**>(row.names.data()), static_cast<UINT>(ids.size()), ids.data()),
              row.result)
        << row.names[0];
    if (row.result == S_OK) {
      EXPECT_EQ(ids, row.ids) << row.names[0];
    }
  }
}

TEST_F(BrokerTypeLibrary, HostAndGeneratedHeaderAgreeWithTheModulesLibrary) {
  auto resource = [](const std::wstring& path) {
    HMODULE image = LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    HRSRC found = image ? FindResourceW(image, MAKEINTRESOURCEW(1), L"TYPELIB") : nullptr;
    HGLOBAL loaded = found ? LoadResource(image, found) : nullptr;
    std::string bytes;
    if (loaded) bytes.assign(static_cast<const char*>(LockResource(loaded)), SizeofResource(image, found));
    if (image) FreeLibrary(image);
    return bytes;
  };
  std::string inModule = resource(WineTest::ModulePath());
  EXPECT_FALSE(inModule.empty());
  EXPECT_TRUE(inModule == resource(WineTest::BinaryDirectory() + L"\\LumenUtilHost.exe"))
      << "the module and the host embed different libraries";

  EXPECT_EQ(IID_ILumenBroker6, Guid(kGenerations[5].interfaceId));
  EXPECT_EQ(CLSID_LumenBrokerImp6, Guid(kGenerations[5].classId));
  EXPECT_EQ(LIBID_LumenBrokerLib, Guid(kLibraryId));
  // The C++ vtable that the server fills must put each method where the
  // marshaller, reading the library, will call it.
  EXPECT_EQ(VtableSlot(&ILumenBroker6::BrokerCreateFile), Find(kGenerations[0].interfaceId, L"BrokerCreateFile").slot);
  EXPECT_EQ(VtableSlot(&ILumenBroker6::BrokerExtTextOutW),
            Find(kGenerations[2].interfaceId, L"BrokerExtTextOutW").slot);
  EXPECT_EQ(VtableSlot(&ILumenBroker6::BrokerIsDriveAvailable),
            Find(kGenerations[4].interfaceId, L"BrokerIsDriveAvailable").slot);
  EXPECT_EQ(VtableSlot(&ILumenBroker6::BrokerMMNotificationClientDestroy), 7 + 101);
}

}  // namespace
