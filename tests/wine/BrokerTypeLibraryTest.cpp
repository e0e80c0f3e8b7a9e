// The broker's type library as COM reads it from the module: every method's
// vtable slot and dispatch id, and names resolved through the dispatch views.
#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <string>
#include <vector>

#include "tests/wine/WineTestSupport.h"

using namespace SASM;
using Microsoft::WRL::ComPtr;

namespace {

struct Generation {
  const wchar_t* interfaceId;
  MEMBERID firstId;
  const wchar_t* firstMethod;
  const wchar_t* lastMethod;
  UINT methods;
};

constexpr Generation kGenerations[] = {
    {L"{2E4BB6BE-A75F-4DC0-9500-68203655A2C4}", 0x60020000, L"BrokerCreateFile", L"BrokerLMIsRunning", 34},
    {L"{DDF4CE26-4BDA-42BC-B0F0-0E75243AD285}", 0x60030000, L"BrokerDelayScreensaver",
     L"BrokerPrefDeleteLumenPlayerVersion", 3},
    {L"{1D4C8A81-B7AC-460A-8C23-98713C41D6B3}", 0x60040000, L"BrokerSaveDialog", L"BrokerIMLangFontLinkReleaseFont", 49},
    {L"{E3F2C3CB-5EB8-4A04-B22C-7E3B4B6AF30F}", 0x60050000, L"BrokerLcdMessageTimeout", L"BrokerGetDirectInputCount", 5},
    {L"{6AE38AE0-750C-11E1-B0C4-0800200C9A66}", 0x60060000, L"BrokerIsDriveAvailable", L"BrokerIsDriveAvailable", 1},
    {L"{299817DA-1FAC-4CE2-8F48-A108237013BD}", 0x60070000, L"BrokerSaveDialog2", L"BrokerMMNotificationClientDestroy",
     10},
};

struct Method {
  std::wstring name;
  MEMBERID id = 0;
  int slot = 0;
};

class BrokerTypeLibrary : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(LoadTypeLibEx(WineTest::ModulePath().c_str(), REGKIND_NONE, &library_), S_OK);
  }

  // The dispatch half of a dual interface, as GetTypeInfoOfGuid gives it.
  ComPtr<ITypeInfo> Dispatch(const wchar_t* iid) {
    GUID guid{};
    ComPtr<ITypeInfo> info;
    EXPECT_EQ(CLSIDFromString(iid, &guid), S_OK);
    EXPECT_EQ(library_->GetTypeInfoOfGuid(guid, &info), S_OK) << iid;
    return info;
  }

  // The methods the vtable half adds to its parent, in vtable order.
  std::vector<Method> OwnMethods(const wchar_t* iid) {
    std::vector<Method> methods;
    ComPtr<ITypeInfo> dispatch = Dispatch(iid), info;
    HREFTYPE ref = 0;
    TYPEATTR* attr = nullptr;
    if (!dispatch || FAILED(dispatch->GetRefTypeOfImplType(-1, &ref)) || FAILED(dispatch->GetRefTypeInfo(ref, &info)) ||
        FAILED(info->GetTypeAttr(&attr)))
      return methods;
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

  ComPtr<ITypeLib> library_;
};

TEST_F(BrokerTypeLibrary, All102MethodsFollowIDispatchWithIdsCountingUpFromEachGenerationsBase) {
  int slot = 7;  // IUnknown's three and IDispatch's four come first
  for (const Generation& generation : kGenerations) {
    std::vector<Method> methods = OwnMethods(generation.interfaceId);
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

}  // namespace
