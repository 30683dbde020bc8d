// The requests of the folder commands.
#include "GeneratorRig.h"

namespace airsync_test {
namespace {

class GeneratorFolder : public GeneratorRig {
 protected:
  GeneratorFolder() {
    Fill(key.text, "{1}3");
    Fill(record.displayName, "Z\xC3\xBCrich");
    Fill(record.serverId.text, "17");
    Fill(record.parentId.text, "5");
    record.type = 12;
  }

  ~GeneratorFolder() override { EXPECT_EQ(FailingMemory::LiveBlocks(), blocksBefore); }

  static void Expect(sml_element* request, const std::string& golden) {
    EXPECT_EQ(InHex(Written(request)), InHex(GoldenDocument(golden)));
  }

  static std::string OutlineOf(sml_element* request) {
    std::string outline = Outline(request);
    SE_Destroy(request);
    return outline;
  }

  _SYNC_KEY key = {};
  BASE_FOLDER record = {};
};

TEST_F(GeneratorFolder, AsksForTheHierarchyWithAKeyOnly) {
  Expect(generator.FolderSync(key), "foldersync-again");
  Fill(key.text, "0");
  Expect(generator.FolderSync(key), "foldersync-initial");
}

TEST_F(GeneratorFolder, NamesTheNamespaceOfEachRequest) {
  for (sml_element* const request :
       {generator.FolderSync(key), generator.FolderCreate(&record, key),
        generator.FolderDelete(record.serverId, key), generator.FolderUpdate(&record, key)}) {
    EXPECT_STREQ(SE_GetNthAttributeName(request, 0), "xmlns");
    EXPECT_STREQ(SE_GetNthAttributeValue(request, 0), "FolderHierarchy:");
    SE_Destroy(request);
  }
}

TEST_F(GeneratorFolder, CreatesWithParentNameAndTypeButWithoutAnId) {
  Expect(generator.FolderCreate(&record, key), "foldercreate-user-folder");
}

TEST_F(GeneratorFolder, DeletesById) { Expect(generator.FolderDelete(record.serverId, key), "folderdelete"); }

TEST_F(GeneratorFolder, UpdatesWithoutAType) {
  Fill(record.displayName, "Vereine");
  Fill(record.parentId.text, "0");
  Expect(generator.FolderUpdate(&record, key), "folderupdate");
  record.type = 1;
  Expect(generator.FolderUpdate(&record, key), "folderupdate");
}

TEST_F(GeneratorFolder, WritesEmptyTextsToo) {
  const BASE_FOLDER nothing = {};
  const _SYNC_KEY none = {};
  EXPECT_EQ(OutlineOf(generator.FolderSync(none)), "FolderSync@7(SyncKey@7=\"\")");
  EXPECT_EQ(OutlineOf(generator.FolderCreate(&nothing, none)),
            "CreateCmd@7(SyncKey@7=\"\" ParentId@7=\"\" DisplayName@7=\"\" Type@7=\"0\")");
  EXPECT_EQ(OutlineOf(generator.FolderDelete(nothing.serverId, none)),
            "DeleteCmd@7(SyncKey@7=\"\" ServerId@7=\"\")");
  EXPECT_EQ(OutlineOf(generator.FolderUpdate(&nothing, none)),
            "UpdateCmd@7(SyncKey@7=\"\" ServerId@7=\"\" ParentId@7=\"\" DisplayName@7=\"\")");
}

TEST_F(GeneratorFolder, ReadsNoFurtherThanTheEndOfAFullField) {
  const std::string name(64, 'n');
  const std::string id(68, 'i');
  const std::string parent(68, 'p');
  const std::string text(68, 'k');
  Fill(key.text, text);
  Fill(record.displayName, name);
  Fill(record.serverId.text, id);
  Fill(record.parentId.text, parent);
  EXPECT_EQ(OutlineOf(generator.FolderUpdate(&record, key)),
            "UpdateCmd@7(SyncKey@7=\"" + text + "\" ServerId@7=\"" + id + "\" ParentId@7=\"" + parent +
                "\" DisplayName@7=\"" + name + "\")");
}

TEST_F(GeneratorFolder, WritesNegativeTypes) {
  record.type = -1;
  sml_element* const type = generator.FolderType(record);
  EXPECT_STREQ(SE_GetValue(type), "-1");
  SE_Destroy(type);
}

TEST_F(GeneratorFolder, BuildsNothingForNoFolder) {
  EXPECT_EQ(generator.FolderCreate(nullptr, key), nullptr);
  EXPECT_EQ(generator.FolderUpdate(nullptr, key), nullptr);
}

}  // namespace
}  // namespace airsync_test
