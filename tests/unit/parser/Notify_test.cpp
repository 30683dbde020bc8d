// The answers of the notification commands.
#include "ParserRig.h"

namespace airsync_test {
namespace {

class ParserNotify : public ParserRig {
 protected:
  ParserNotify() {
    Fill(second.folder.serverId.text, "2:2");
    second.handle = 43;
  }

  static Node Carriers(const std::vector<std::string>& profiles) {
    Nodes children;
    for (const std::string& profile : profiles) children.push_back({"CarrierProfile", profile});
    return {"ValidCarrierProfiles", children};
  }

  // Runs like Run, but releases the list that was handed out first, and keeps its texts.
  template <typename Body>
  SYNC_RESULT Ask(const Nodes& children, const Body& body) {
    sml_element* const tree = Tree({"AirNotify", children}, 3);
    list = kUntouched;
    count = 77;
    carriers.clear();
    return Run(tree, [&](sml_element* root) {
      body(root);
      if (list == kUntouched) return;
      for (UINT16 i = 0; i < count; ++i) {
        carriers.emplace_back(reinterpret_cast<const char*>(list[i]), sizeof *list);
      }
      if (list != nullptr) AdapterFree(list);
    });
  }

  SYNC_RESULT GetCarrierList(const Nodes& children) {
    return Ask(children, [this](sml_element* root) { parser.GetCarrierList(root, list, count); });
  }
  SYNC_RESULT SetDeviceAddress(const Nodes& children) {
    return Ask(children, [this](sml_element* root) { parser.SetDeviceAddress(root); });
  }
  SYNC_RESULT NotifyEnable(const Nodes& children) {
    const SYNC_RESULT aborted = Ask(children, [this](sml_element* root) {
      returned = parser.NotifyEnable(root, &store, folders, 3, list, count);
    });
    return aborted;
  }

  static std::string Padded(std::string text) {
    text.resize(64, '\0');
    return text;
  }

  static inline UINT8 (*const kUntouched)[64] = reinterpret_cast<UINT8 (*)[64]>(64);

  FOLDER_INFO second = FolderInUse();
  FOLDER_INFO* folders[3] = {&folder, nullptr, &second};
  UINT8 (*list)[64] = kUntouched;
  UINT16 count = 77;
  Lines carriers;
  SYNC_RESULT returned = 0x12345678;
};

TEST_F(ParserNotify, CarrierListHandsOutEachProfile) {
  EXPECT_EQ(GetCarrierList({Carriers({"Tel", "", "Net"}), {"Status", "1"}}), 0U);
  EXPECT_EQ(carriers, (Lines{Padded("Tel"), Padded(""), Padded("Net")}));
}

TEST_F(ParserNotify, CarrierListWithoutProfilesIsNull) {
  for (const Nodes& children : {Nodes{{"Status", "1"}}, Nodes{{"Status", "1"}, Carriers({})},
                                Nodes{{"Status", "1"}, {"ValidCarrierProfiles"}}}) {
    EXPECT_EQ(GetCarrierList({Carriers({"Tel"}), {"Status", "1"}}), 0U);
    EXPECT_EQ(GetCarrierList(children), 0U);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(count, 0);
  }
}

TEST_F(ParserNotify, CarrierProfilesAreCutToTheirEntry) {
  const std::string umlaut = "\xC3\xBC";
  const std::string wave = "\xF0\x9F\x91\x8B";
  EXPECT_EQ(GetCarrierList({{"Status", "1"},
                            Carriers({std::string(63, 'c'), std::string(64, 'd'), std::string(65, 'e'),
                                      std::string(62, 'f') + umlaut, std::string(61, 'g') + umlaut,
                                      std::string(60, 'h') + wave, std::string(59, 'i') + wave})}),
            0U);
  EXPECT_EQ(carriers,
            (Lines{Padded(std::string(63, 'c')), Padded(std::string(63, 'd')), Padded(std::string(63, 'e')),
                   Padded(std::string(62, 'f')), Padded(std::string(61, 'g') + umlaut),
                   Padded(std::string(60, 'h')), Padded(std::string(59, 'i') + wave)}));
}

TEST_F(ParserNotify, CarrierProfileWithoutTextIsEmpty) {
  EXPECT_EQ(GetCarrierList({{"Status", "1"}, {"ValidCarrierProfiles", Nodes{{"CarrierProfile"}, {"x"}}}}),
            0U);
  EXPECT_EQ(carriers, Lines{Padded("")});
}

TEST_F(ParserNotify, TheLastOfSeveralCarrierListsCounts) {
  EXPECT_EQ(GetCarrierList({{"Status", "1"}, Carriers({"a", "b"}), Carriers({"c"})}), 0U);
  EXPECT_EQ(carriers, Lines{Padded("c")});
  EXPECT_EQ(GetCarrierList({{"Status", "1"}, Carriers({"a", "b"}), Carriers({})}), 0U);
  EXPECT_EQ(list, nullptr) << "not the released one";
  EXPECT_EQ(count, 0);
}

TEST_F(ParserNotify, RefusesAStrayCarrierProfile) {
  const auto stray = [this]() {
    return Run(Tree({"CarrierProfile", "stray"}, 3),
               [this](sml_element* element) { parser.ChildHandler(element); });
  };
  EXPECT_EQ(stray(), 0x8001000bU) << "there is no list yet";
  EXPECT_EQ(GetCarrierList({{"Status", "1"}, Carriers({"Tel"})}), 0U);
  EXPECT_EQ(stray(), 0x8001000bU) << "the list was handed out";
}

TEST_F(ParserNotify, CarrierListAndDeviceAddressRaiseTheServersStatus) {
  struct {
    Node status;
    SYNC_RESULT result;
  } const rows[] = {{{"Status", "2"}, 0x80010a02U}, {{"Status", "0"}, 0x80010a00U},
                    {{"Status"}, 0x80010a00U},      {{"Status", ""}, 0x80010a00U},
                    {{"Status", "x"}, 0x80010a00U}, {{"Status", "-1"}, 0xffffffffU}};
  for (const auto& row : rows) {
    EXPECT_EQ(GetCarrierList({row.status, Carriers({"Tel"})}), row.result);
    EXPECT_EQ(list, kUntouched);
    EXPECT_EQ(count, 77);
    EXPECT_EQ(SetDeviceAddress({row.status}), row.result);
  }
}

TEST_F(ParserNotify, DeviceAddressSucceedsWithStatusOne) {
  EXPECT_EQ(SetDeviceAddress({{"Status", "1"}}), 0U);
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserNotify, AnAnswerWithoutAStatusKeepsThePreviousOne) {
  EXPECT_EQ(SetDeviceAddress({}), 0x80010a00U) << "none yet: 0";
  EXPECT_EQ(SetDeviceAddress({{"Status", "1"}}), 0U);
  EXPECT_EQ(SetDeviceAddress({}), 0U);
  EXPECT_EQ(NotifyEnable({}), 0U);
  EXPECT_EQ(returned, 0U);
}

TEST_F(ParserNotify, EnableReportsTheFoldersAndHandsOutTheCarriers) {
  EXPECT_EQ(NotifyEnable({{"Responses", Nodes{{"Folder", Nodes{{"Status", "1"}, {"ServerId", "2:2"}}},
                                              {"Folder", Nodes{{"ServerId", "2:1"}, {"Status", "1"}}}}},
                          {"Status", "1"},
                          Carriers({"Tel"})}),
            0U);
  EXPECT_EQ(returned, 0U);
  EXPECT_EQ(carriers, Lines{Padded("Tel")});
  EXPECT_EQ(store.Lines(), (Lines{"SetNotifyFolderStatus 43 result=0x00000000",
                                  "SetNotifyFolderStatus 42 result=0x00000000"}));
}

TEST_F(ParserNotify, EnableReportsAFoldersOwnFailureAsASuccess) {
  EXPECT_EQ(NotifyEnable({{"Status", "1"},
                          {"Responses", Nodes{{"Folder", Nodes{{"ServerId", "2:1"}, {"Status", "5"}}}}}}),
            0U);
  EXPECT_EQ(store.Lines(), (Lines{"SetNotifyFolderStatus 42 result=0x00000000"}));
}

// No answer brings it about: the overall status is put in from outside, between two folders.
TEST_F(ParserNotify, EnableReportsAFoldersOwnStatusOnlyWhereTheOverallOneIsAFailure) {
  char failure[] = "7";
  sml_element overall = {};
  overall.pValue = failure;
  store.OnCall([this, &overall](const StoreCall&) { parser.ProcessNotifyStatus(&overall); });
  EXPECT_EQ(NotifyEnable({{"Status", "1"},
                          {"Responses", Nodes{{"Folder", Nodes{{"ServerId", "2:1"}, {"Status", "5"}}},
                                              {"Folder", Nodes{{"ServerId", "2:2"}, {"Status", "5"}}}}}}),
            0U);
  EXPECT_EQ(returned, 0x80010a07U);
  EXPECT_EQ(store.Lines(), (Lines{"SetNotifyFolderStatus 42 result=0x00000000",
                                  "SetNotifyFolderStatus 43 result=0x80010a05"}));
}

TEST_F(ParserNotify, EnableReportsEachStatusAndNoneWithoutOne) {
  EXPECT_EQ(
      NotifyEnable({{"Status", "1"},
                    {"Responses", Nodes{{"Folder", Nodes{{"ServerId", "2:1"}}},
                                        {"Folder", Nodes{{"ServerId", "2:2"}, {"Status"}, {"Status"}}}}}}),
      0U);
  EXPECT_EQ(store.Lines(), (Lines{"SetNotifyFolderStatus 43 result=0x00000000",
                                  "SetNotifyFolderStatus 43 result=0x00000000"}));
}

TEST_F(ParserNotify, EnableReturnsTheServersRefusalWithTheCarriers) {
  EXPECT_EQ(NotifyEnable({{"Status", "4"},
                          Carriers({"Tel"}),
                          {"Responses", Nodes{{"Folder", Nodes{{"ServerId", "2:1"}, {"Status", "1"}}}}}}),
            0U);
  EXPECT_EQ(returned, 0x80010a04U);
  EXPECT_EQ(carriers, Lines{Padded("Tel")});
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserNotify, EnableRaisesAFolderThatIsNotInTheListAndHandsOutNothing) {
  for (const char* const id : {"2:3", "2:11", "2:", ""}) {
    EXPECT_EQ(NotifyEnable({{"Status", "1"},
                            Carriers({"Tel"}),
                            {"Responses", Nodes{{"Folder", Nodes{{"ServerId", id}, {"Status", "1"}}}}}}),
              0x80010011U);
    EXPECT_EQ(list, kUntouched);
    EXPECT_EQ(count, 77);
  }
  EXPECT_TRUE(store.Calls().empty());
}

TEST_F(ParserNotify, EnableIgnoresAStatusBeforeAnyFolderWasNamed) {
  LogSpy spy;
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, &spy);
  EXPECT_EQ(NotifyEnable({{"Status", "1"}, {"Responses", Nodes{{"Folder", Nodes{{"Status", "1"}}}}}}), 0U);
  EXPECT_TRUE(store.Calls().empty());
  EXPECT_EQ(spy.Lines(), (Lines{"status: |TRUE", "Ignored, no folder was named before: |Status"}));
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, nullptr);
}

TEST_F(ParserNotify, EnableLogsWhatItReads) {
  LogSpy spy;
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, &spy);
  EXPECT_EQ(NotifyEnable({{"Status", "1"},
                          {"ValidCarrierProfiles", Nodes{{"CarrierProfile", "Tel"}, {"CarrierProfile"}}},
                          {"Responses", Nodes{{"Folder", Nodes{{"ServerId", "2:1"}, {"Status"}}}}}}),
            0U);
  EXPECT_EQ(spy.Lines(), (Lines{"NotifyCarrierProfile:|TRUE", "NotifyCarrierProfile:|FALSE",
                                "ServerId: |TRUE", "status: |FALSE"}));
  Log::SetLevel(AS_LOG_SOURCE_PARSER, AS_LOG_LEVEL_INFO, nullptr);
}

TEST_F(ParserNotify, GuidIsReadAtAnyLength) {
  for (const std::size_t length : {0U, 38U, 67U, 68U, 5000U}) {
    sml_element* const tree = Tree({"NotifyGUID", std::string(length, 'g')}, 3);
    EXPECT_EQ(Run(tree, [this](sml_element* element) { parser.ChildHandler(element); }), 0U);
  }
  EXPECT_EQ(Run(Tree({"NotifyGUID"}, 3), [this](sml_element* element) { parser.ChildHandler(element); }), 0U);
}

}  // namespace
}  // namespace airsync_test
