// What the tests of outgoing events stand on.
#ifndef TESTS_UNIT_GENERATOR_EVENT_RIG_H
#define TESTS_UNIT_GENERATOR_EVENT_RIG_H

#include "GeneratorRig.h"
#include "support/FullItems.h"

namespace airsync_test {

class EventRig : public GeneratorRig {
 protected:
  EventRig() { folder.dataType = DATATYPE_CALENDAR; }

  /// The ApplicationData of an Add of this event, as a line.
  std::string DataOf(AS_CALENDAR_T& event) { return DataIn(AS_CHANGE_ADD, "Add", event); }
  /// The same of a Change.
  std::string DataOfChange(AS_CALENDAR_T& event) { return DataIn(AS_CHANGE_CHANGE, "Change", event); }

 private:
  std::string DataIn(AS_CHANGE_KIND_T kind, const std::string& command, AS_CALENDAR_T& event) {
    HandOut(kind, "2:1", 1, &event);
    sml_element* const request = NextRequest();
    const std::string path = "Collections/Collection/Commands/" + command + "/ApplicationData";
    std::string outline = Outline(SE_GetChild(request, path.c_str()));
    SE_Destroy(request);
    EXPECT_EQ(FailingMemory::LiveBlocks(), blocksBefore);
    return outline;
  }
};

}  // namespace airsync_test

#endif
