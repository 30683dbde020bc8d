// All that the server keeps, behind one transaction at a time.
#pragma once

#include <string>

#include "data/AttachmentStore.h"
#include "data/Database.h"
#include "data/DeviceStore.h"
#include "data/FolderStore.h"
#include "data/ItemStore.h"
#include "data/MessageStore.h"
#include "data/Moves.h"
#include "support/Clock.h"

namespace demoserver {

struct State {
  explicit State(const std::string& file)
      : database(file),
        folders(database),
        items(database),
        attachments(database),
        messages(database),
        moves(database, items),
        devices(database) {}

  Clock clock;
  Database database;
  FolderStore folders;
  ItemStore items;
  AttachmentStore attachments;
  MessageStore messages;
  Moves moves;
  DeviceStore devices;
};

}  // namespace demoserver
