#include "store/FolderOffer.h"

#include <algorithm>
#include <utility>

namespace airsync {
namespace {

template <typename Report>
void keep(std::vector<Report>& reports, const Report& report) {
  const auto earlier = std::find_if(reports.begin(), reports.end(),
                                    [&](const Report& other) { return other.folder == report.folder; });
  if (earlier == reports.end()) {
    reports.push_back(report);
  } else {
    *earlier = report;
  }
}

}  // namespace

FolderOffer::FolderOffer(std::vector<FolderRecord> folders) : folders_(std::move(folders)) {
  for (FolderRecord& folder : folders_) infos_.push_back(&folder.info());
}

void FolderOffer::report(const FolderEstimate& estimate) { keep(estimates_, estimate); }

void FolderOffer::report(const FolderNotifyStatus& status) { keep(notifyStatuses_, status); }

}  // namespace airsync
