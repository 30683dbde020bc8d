// The notification requests.
#include "GeneratorRig.h"

namespace airsync_test {
namespace {

class GeneratorNotify : public GeneratorRig {
 protected:
  GeneratorNotify() {
    first.notifyEnabled = 1;
    Fill(second.folder.serverId.text, "2:2");
    second.notifyEnabled = 255;
  }
  ~GeneratorNotify() override { EXPECT_EQ(FailingMemory::LiveBlocks(), blocksBefore); }

  static const UINT8* Bytes(const char* text) { return reinterpret_cast<const UINT8*>(text); }

  static std::string OutlineOf(sml_element* request) {
    std::string outline = Outline(request);
    SE_Destroy(request);
    return outline;
  }

  std::string Enable(unsigned int lifetime, const char* address, const char* carrier) {
    return OutlineOf(generator.NotifyEnable(folders, 2, lifetime, "Ada", address, Bytes(carrier)));
  }

  FOLDER_INFO first = FolderInUse();
  FOLDER_INFO second = FolderInUse();
  FOLDER_INFO* folders[2] = {&first, &second};

  const std::string bothFolders = " Enable@3(Folder@3(ServerId@3=\"2:1\") Folder@3(ServerId@3=\"2:2\")))";
};

TEST_F(GeneratorNotify, CarrierListAsksWithAnEmptyDevice) {
  EXPECT_EQ(InHex(Written(generator.GetCarrierList())), "03 01 6A 00 00 03 45 09 01");
}

TEST_F(GeneratorNotify, EnableWithACarrier) {
  EXPECT_EQ(InHex(Written(generator.NotifyEnable(folders, 2, 3600, "Ada", "+49123", Bytes("tel")))),
            InHex(GoldenDocument("notifyenable-carrier")));
}

TEST_F(GeneratorNotify, EnableByMailNeverNamesTheCarrier) {
  for (const char* const address : {"ada@example.test", "@", "ada@"}) {
    EXPECT_EQ(Enable(1, address, "tel"),
              std::string("AirNotify@3(Lifetime@3=\"1\" DeviceInfo@3(FriendlyName@3=\"Ada\""
                          " DeviceAddress@3=\"") +
                  address + "\")" + bothFolders);
  }
}

TEST_F(GeneratorNotify, EnableWithoutACarrierNamesNone) {
  const std::string expected =
      "AirNotify@3(Lifetime@3=\"1\" DeviceInfo@3(FriendlyName@3=\"Ada\" DeviceAddress@3=\"+49\")" +
      bothFolders;
  EXPECT_EQ(Enable(1, "+49", ""), expected);
  EXPECT_EQ(Enable(1, "+49", nullptr), expected);
}

TEST_F(GeneratorNotify, EnableLeavesOutFoldersWithoutTheFlagAndGaps) {
  first.notifyEnabled = 0;
  EXPECT_EQ(Enable(1, "a@b", ""),
            "AirNotify@3(Lifetime@3=\"1\" DeviceInfo@3(FriendlyName@3=\"Ada\" DeviceAddress@3=\"a@b\")"
            " Enable@3(Folder@3(ServerId@3=\"2:2\")))");
  folders[1] = nullptr;
  EXPECT_EQ(Enable(1, "a@b", ""),
            "AirNotify@3(Lifetime@3=\"1\" DeviceInfo@3(FriendlyName@3=\"Ada\" DeviceAddress@3=\"a@b\")"
            " Enable@3)");
}

TEST_F(GeneratorNotify, EnableOfNoFolderAtAllIsSentEmpty) {
  EXPECT_EQ(OutlineOf(generator.NotifyEnable(nullptr, 0, 1, "Ada", "a@b", Bytes(""))),
            "AirNotify@3(Lifetime@3=\"1\" DeviceInfo@3(FriendlyName@3=\"Ada\" DeviceAddress@3=\"a@b\")"
            " Enable@3)");
}

TEST_F(GeneratorNotify, DisableIgnoresTheFoldersAndTheDevice) {
  EXPECT_EQ(Enable(0, "+49", "tel"), "AirNotify@3(Lifetime@3=\"0\" DeviceInfo@3)");
  EXPECT_EQ(InHex(Written(generator.NotifyEnable(folders, 2, 0, "Ada", "+49", Bytes("tel")))),
            "03 01 6A 00 00 03 45 48 03 30 00 01 09 01");
}

TEST_F(GeneratorNotify, LifetimeIsASignedNumberOnTheWire) {
  EXPECT_NE(Enable(2147483647U, "a@b", "").find("Lifetime@3=\"2147483647\""), std::string::npos);
  EXPECT_NE(Enable(4294967295U, "a@b", "").find("Lifetime@3=\"-1\""), std::string::npos);
}

TEST_F(GeneratorNotify, MissingTextsAreElementsWithoutText) {
  EXPECT_EQ(OutlineOf(generator.NotifyEnable(nullptr, 0, 1, nullptr, nullptr, nullptr)),
            "AirNotify@3(Lifetime@3=\"1\" DeviceInfo@3(FriendlyName@3 DeviceAddress@3) Enable@3)");
  EXPECT_EQ(OutlineOf(generator.SetDeviceAddress(nullptr, nullptr, nullptr)),
            "AirNotify@3(DeviceInfo@3(FriendlyName@3 DeviceAddress@3 Carrier@3))");
}

TEST_F(GeneratorNotify, DeviceAddressComesWithNameAndCarrier) {
  EXPECT_EQ(OutlineOf(generator.SetDeviceAddress(Bytes("tel"), "Ada", "a@b")),
            "AirNotify@3(DeviceInfo@3(FriendlyName@3=\"Ada\" DeviceAddress@3=\"a@b\" Carrier@3=\"tel\"))");
}

TEST_F(GeneratorNotify, RequestsNameTheirNamespace) {
  for (sml_element* const request :
       {generator.GetCarrierList(), generator.SetDeviceAddress(Bytes(""), "", ""),
        generator.NotifyEnable(folders, 2, 1, "", "", Bytes("")),
        generator.NotifyEnable(folders, 2, 0, "", "", Bytes(""))}) {
    EXPECT_STREQ(SE_GetNthAttributeName(request, 0), "xmlns");
    EXPECT_STREQ(SE_GetNthAttributeValue(request, 0), "AirNotify:");
    SE_Destroy(request);
  }
}

TEST_F(GeneratorNotify, FolderIdsThatFillTheirFieldGoOutWhole) {
  Fill(first.folder.serverId.text, std::string(68, 'f'));
  EXPECT_NE(Enable(1, "a@b", "").find("Folder@3(ServerId@3=\"" + std::string(68, 'f') + "\")"),
            std::string::npos);
}

}  // namespace
}  // namespace airsync_test
