// Items of any class as JSON.
#ifndef AIRSYNC_FORMATS_ITEM_JSON_H
#define AIRSYNC_FORMATS_ITEM_JSON_H

#include <nlohmann/json_fwd.hpp>

#include "store/StoreTypes.h"

namespace airsync {

nlohmann::ordered_json itemToJson(const ItemValue& item);

}  // namespace airsync

#endif
