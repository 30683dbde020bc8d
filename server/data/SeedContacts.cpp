#include <array>
#include <cstdio>

#include "data/Seed.h"
#include "data/SeedPeople.h"
#include "data/SeedRandom.h"

namespace demoserver {
namespace {

using nlohmann::json;
constexpr std::array kCompanies = {"Bäckerei Löwe & Co.", "Aether <Labs>",  "株式会社さくら",
                                   "\"Quoted\" Ltd",      "ООО Ромашка",    "Nordlicht AG",
                                   "Αιγαίον Α.Ε.",        "Rue 42 S.à r.l."};
constexpr std::array kJobs = {"Engineer", "Köchin", "профессор", "Architecte", "営業部長", "Head of R&D"};
constexpr std::array kDepartments = {"R&D", "Einkauf", "Ventes", "総務部", "Support"};
constexpr std::array kCategories = {"Family", "Freunde", "Business", "VIP & press",
                                    "Клуб",   "同窓会",  "Sports"};
constexpr std::array kChildren = {"Mia", "Émile", "Саша", "ゆき", "Noah", "Zoë", "Łucja"};
constexpr std::array kTitles = {"Dr.", "Prof.", "Mme", "Herr", "Ms"};
constexpr std::array kSuffixes = {"Jr.", "PhD", "III", "M.A."};
constexpr std::array kSentences = {"Met at the conference in Genève; prefers calls before 10 a.m. ",
                                   "Ruft gern zurück, wenn man auf die Mailbox spricht. ",
                                   "Угощает всех чаем & вареньем. ",
                                   "Never send attachments > 2 MB; \"plain text only\", he says. ",
                                   "駅の北口で待ち合わせ。 ",
                                   "Allergic to nuts <important!>.\n"};

class Writer {
 public:
  Writer(std::uint64_t seed, int number)
      : random_(seed * 0x2545F4914F6CDD1Du + static_cast<std::uint64_t>(number)),
        number_(number),
        culture_(pickCulture(random_)) {}

  json run() {
    name();
    phones();
    address("Business", 60);
    address("Home", 50);
    address("Other", 10);
    mail();
    work();
    family();
    if (random_.chance(40)) list("Categories", kCategories, 3);
    if (random_.chance(30)) contact_["Body"] = note(1 + random_.below(4));
    if (number_ % 50 == 7) contact_["Body"] = note(60 + random_.below(60));
    return std::move(contact_);
  }

 private:
  std::string& field(const char* name) {
    contact_[name] = "";
    return contact_[name].get_ref<std::string&>();
  }
  void maybe(int percent, const char* name, const std::string& value) {
    if (random_.chance(percent)) field(name) = value;
  }

  void name() {
    const std::string first = random_.pick(culture_.first);
    const std::string last = random_.pick(culture_.last);
    maybe(95, "FirstName", first);
    field("LastName") = last;
    maybe(80, "FileAs", last + ", " + first);
    maybe(15, "MiddleName", random_.pick(culture_.first));
    maybe(10, "Title", random_.pick(kTitles));
    maybe(5, "Suffix", random_.pick(kSuffixes));
    if (!culture_.hasReadings) return;
    field("YomiFirstName") = "ハナコ";
    field("YomiLastName") = "ヤマダ";
    maybe(50, "YomiCompanyName", "カブシキガイシャ サクラ");
  }

  std::string phone() {
    std::array<char, 16> digits{};
    static_cast<void>(
        std::snprintf(digits.data(), digits.size(), " %03d %04d", random_.below(1000), random_.below(10000)));
    return culture_.prefix + std::string(digits.data());
  }

  void phones() {
    constexpr std::array<std::pair<const char*, int>, 12> kPhones = {{{"MobilePhoneNumber", 80},
                                                                      {"HomePhoneNumber", 50},
                                                                      {"Home2PhoneNumber", 6},
                                                                      {"HomeFaxNumber", 8},
                                                                      {"BusinessPhoneNumber", 60},
                                                                      {"Business2PhoneNumber", 8},
                                                                      {"BusinessFaxNumber", 25},
                                                                      {"CarPhoneNumber", 4},
                                                                      {"PagerNumber", 3},
                                                                      {"RadioPhoneNumber", 2},
                                                                      {"AssistantPhoneNumber", 5},
                                                                      {"AssistantName", 0}}};
    for (const auto& [name, percent] : kPhones) maybe(percent, name, phone());
    maybe(5, "AssistantName", random_.pick(culture_.first));
  }

  void address(const std::string& kind, int percent) {
    if (!random_.chance(percent)) return;
    field((kind + "Street").c_str()) =
        random_.pick(culture_.streets) + " " + std::to_string(1 + random_.below(200));
    field((kind + "City").c_str()) = random_.pick(culture_.cities);
    field((kind + "PostalCode").c_str()) = std::to_string(10000 + random_.below(90000));
    field((kind + "Country").c_str()) = culture_.country;
    maybe(40, (kind + "State").c_str(), "Region " + std::to_string(1 + random_.below(16)));
  }

  std::string mailAddress(const char* domain) {
    return random_.pick(culture_.mail) + std::to_string(number_) + "@" + domain;
  }

  void mail() {
    maybe(85, "Email1Address", mailAddress("example.org"));
    maybe(30, "Email2Address", mailAddress("mail.example.com"));
    maybe(10, "Email3Address", mailAddress("example.net"));
    if (number_ % 20 == 3)
      field("Email1Address") = "\"" + random_.pick(kChildren) + " " + std::to_string(number_) + "\" <" +
                               mailAddress("example.org") + ">";
    maybe(15, "WebPage", "http://www.example.org/~" + random_.pick(culture_.mail) + "?a=1&b=<2>");
  }

  void work() {
    maybe(55, "CompanyName", random_.pick(kCompanies));
    maybe(40, "JobTitle", random_.pick(kJobs));
    maybe(25, "Department", random_.pick(kDepartments));
    maybe(15, "OfficeLocation",
          std::to_string(1 + random_.below(5)) + "." + std::to_string(random_.below(40)));
  }

  std::string date(int firstYear, int years) {
    std::array<char, 48> text{};
    static_cast<void>(std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:00:00.000Z",
                                    firstYear + random_.below(years), 1 + random_.below(12),
                                    1 + random_.below(28), random_.chance(70) ? 0 : 22));
    return text.data();
  }

  void family() {
    if (number_ % 40 == 11)
      field("Birthday") = "1976-02-29T00:00:00.000Z";
    else
      maybe(45, "Birthday", date(1930, 70));
    maybe(15, "Anniversary", date(1970, 45));
    maybe(20, "Spouse", random_.pick(culture_.first));
    if (random_.chance(20)) list("Children", kChildren, 4);
  }

  void list(const char* name, Words words, int most) {
    json entries = json::array();
    for (int count = 1 + random_.below(most); count > 0; --count) entries.push_back(random_.pick(words));
    contact_[name] = std::move(entries);
  }

  std::string note(int sentences) {
    std::string text;
    for (; sentences > 0; --sentences) text += random_.pick(kSentences);
    return text;
  }

  Random random_;
  int number_;
  const Culture& culture_;
  json contact_ = json::object();
};

}  // namespace

json seedContact(std::uint64_t seed, int number) { return Writer(seed, number).run(); }

}  // namespace demoserver
