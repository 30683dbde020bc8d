// FolderSync, FolderCreate, FolderDelete, FolderUpdate and GetHierarchy.
//
// The hierarchy has a chain of keys of its own for each device (see Chain). A command that fails answers its
// status alone and leaves the state, the key included, as it was. Deleting a folder deletes all below it; the
// device hears of those by its next FolderSync.
#pragma once

#include <string>

#include "data/State.h"
#include "wbxml/Element.h"

namespace demoserver {

// Each takes the request's root and returns the response's. Throws BadRequest when the root is another one.
// Runs inside the caller's transaction.
Element runFolderSync(State& state, const std::string& device, const Element& request);
Element runFolderCreate(State& state, const std::string& device, const Element& request);
Element runFolderDelete(State& state, const std::string& device, const Element& request);
Element runFolderUpdate(State& state, const std::string& device, const Element& request);
Element runGetHierarchy(State& state);

}  // namespace demoserver
