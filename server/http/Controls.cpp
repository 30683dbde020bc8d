#include "http/Controls.h"

#include <array>
#include <nlohmann/json.hpp>
#include <string>

#include "data/Chain.h"
#include "http/AdminReply.h"
#include "protocol/Status.h"

namespace demoserver {
namespace {

using nlohmann::json;

constexpr int kMaxNumber = 1'000'000'000;

struct NumberMember {
  const char* name;
  int FaultPlan::*ofPlan;
  int Fault::*ofFault;
  int least;
  int most;
};
constexpr std::array<NumberMember, 4> kNumbers = {{
    {"after", &FaultPlan::after, nullptr, 0, kMaxNumber},
    {"count", &FaultPlan::count, nullptr, -1, kMaxNumber},
    {"status", nullptr, &Fault::status, 200, 599},
    {"delayMs", nullptr, &Fault::delayMs, 0, kMaxNumber},
}};

struct FlagMember {
  const char* name;
  bool Fault::*field;
};
constexpr std::array<FlagMember, 4> kFlags = {{
    {"closeBeforeHandling", &Fault::dropRequest},
    {"closeBeforeAnswer", &Fault::dropAnswer},
    {"closeAfterAnswer", &Fault::closeAfter},
    {"noCollection", &Fault::noCollection},
}};

const json& objectIn(const json& body) {
  if (!body.is_object()) throw BadRequest("the body must be a JSON object");
  return body;
}

int numberIn(const std::string& name, const json& value, int least, int most) {
  const auto number = value.is_number_integer() ? value.get<std::int64_t>() : least - std::int64_t{1};
  if (number < least || number > most)
    throw BadRequest(name + " must be a number from " + std::to_string(least) + " to " +
                     std::to_string(most));
  return static_cast<int>(number);
}

bool takeNumber(FaultPlan& plan, const std::string& name, const json& value) {
  for (const NumberMember& member : kNumbers) {
    if (name != member.name) continue;
    const int number = numberIn(name, value, member.least, member.most);
    (member.ofPlan != nullptr ? plan.*member.ofPlan : plan.fault.*member.ofFault) = number;
    return true;
  }
  if (name != "cutBody") return false;
  plan.fault.cutBody = static_cast<std::size_t>(numberIn(name, value, 0, kMaxNumber));
  return true;
}

bool takeFlag(FaultPlan& plan, const std::string& name, const json& value) {
  for (const FlagMember& member : kFlags) {
    if (name != member.name) continue;
    plan.fault.*member.field = value.get<bool>();
    return true;
  }
  return false;
}

FaultPlan planIn(const json& body) {
  FaultPlan plan;
  for (const auto& [name, value] : objectIn(body).items()) {
    if (name == "command")
      plan.command = value.get<std::string>();
    else if (!takeNumber(plan, name, value) && !takeFlag(plan, name, value))
      throw BadRequest("there is no fault " + name);
  }
  return plan;
}

HttpReply showFaults(const FaultPlan& plan) {
  json shown = {{"command", plan.command}, {"picked", plan.picked()}};
  for (const NumberMember& member : kNumbers)
    shown[member.name] = member.ofPlan != nullptr ? plan.*member.ofPlan : plan.fault.*member.ofFault;
  for (const FlagMember& member : kFlags) shown[member.name] = plan.fault.*member.field;
  shown["cutBody"] = plan.fault.cutBody ? json(*plan.fault.cutBody) : json();
  return adminAnswer(200, shown);
}

HttpReply showHabits(const Habits& habits) {
  json shown = json::object();
  for (const Habit& habit : kHabits) shown[std::string(habit.name)] = habits.*habit.field;
  return adminAnswer(200, shown);
}

HttpReply setHabits(Habits& habits, const json& body) {
  Habits changed = habits;
  for (const auto& [name, on] : objectIn(body).items())
    if (!setHabit(changed, name, on.get<bool>())) throw BadRequest("there is no habit " + name);
  habits = changed;
  return showHabits(habits);
}

HttpReply forgetFolderKeys(Database& database, const HttpRequest& request) {
  const std::string& folder = request.parameter("folder");
  if (folder.empty()) throw BadRequest("the query names no folder (folder)");
  const int forgotten =
      forgetKeys(database, folder == "hierarchy" ? kHierarchy : folder, request.parameter("device"));
  return adminAnswer(200, {{"forgotten", forgotten}});
}

}  // namespace

std::optional<HttpReply> runControl(Database& database, const Controls& controls, std::string_view what,
                                    const HttpRequest& request) {
  const bool get = request.method == "GET";
  const bool put = request.method == "PUT";
  if (what == "habits" && get) return showHabits(controls.habits);
  if (what == "habits" && put) return setHabits(controls.habits, json::parse(request.body));
  if (what == "faults" && put) controls.faults = planIn(json::parse(request.body));
  if (what == "faults" && (get || put)) return showFaults(controls.faults);
  if (what == "keys" && request.method == "DELETE") return forgetFolderKeys(database, request);
  return std::nullopt;
}

}  // namespace demoserver
