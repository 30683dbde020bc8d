// What both sides must hold in the end: the changes that are made on each of them, and what they amount to.
#ifndef AIRSYNC_TESTS_CONVERGE_MODEL_H
#define AIRSYNC_TESTS_CONVERGE_MODEL_H

#include <map>
#include <set>
#include <string>
#include <vector>

#include "converge/Machine.h"
#include "converge/Random.h"

namespace airsync::converge {

/// Fills a new account on the server.
void fill(Machine& machine, Random& random);

/// An item is changed on one side only in the whole of a run: which side wins a conflict is another matter.
class Model {
 public:
  Model(Machine& machine, Random& random);

  void changeThere();
  void changeHere();

  /// What is wrong after a clean run; empty: nothing is lost, nothing is there twice, both sides are the
  /// same.
  std::vector<std::string> complaints();

  std::size_t changes() const { return changes_; }

 private:
  struct Folder {
    const char* id;
    Records expected;                     // of items whose ids are known
    std::map<long long, Json> addedHere;  // by their numbers in the store
    std::vector<Json> moved;        // records that came from another folder, with ids of the server's choice
    std::set<std::string> touched;  // ids that one side has changed
  };

  Folder& folder(const char* id);
  // An id that neither side has changed; empty when there is none left.
  std::string untouched(Folder& folder);
  Json newValues(const char* folder);

  void addThere(Folder& folder);
  void changeThere(Folder& folder);
  void removeThere(Folder& folder);
  void addHere(Store& store, Folder& folder);
  void changeHere(Store& store, Folder& folder);
  void changeAddedHere(Store& store, Folder& folder);
  void removeHere(Store& store, Folder& folder);

  void compareThere(const Folder& folder, const Records& there, std::vector<std::string>& complaints) const;
  void compareHere(const Folder& folder, const Records& there, std::vector<std::string>& complaints) const;
  void checkStore(std::vector<std::string>& complaints) const;

  Machine& machine_;
  Random& random_;
  std::vector<Folder> folders_;
  std::size_t changes_ = 0;
};

}  // namespace airsync::converge

#endif
