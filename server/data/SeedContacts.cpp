#include <array>
#include <cstdio>
#include <span>

#include "data/Seed.h"

namespace demoserver {
namespace {

using nlohmann::json;
using Words = std::span<const char* const>;

// A people's names and places, in its own script, and the same names as an address spells them.
struct Culture {
  const char* country;
  Words first;
  Words last;
  Words cities;
  Words streets;
  Words mail;          // parts of addresses
  const char* prefix;  // of telephone numbers
};

constexpr std::array kGermanFirst = {"Jürgen", "Änne",      "Käthe", "Günther",
                                     "Sören",  "Liselotte", "Björn", "Anna"};
constexpr std::array kGermanLast = {"Müller", "Groß",  "Schäfer", "von der Heide",
                                    "Weiß",   "Jäger", "Öztürk",  "Schmidt"};
constexpr std::array kGermanCities = {"Köln", "München", "Düsseldorf", "Görlitz"};
constexpr std::array kGermanStreets = {"Königsallee", "Große Straße", "Am Bächle", "Schloßweg"};
constexpr std::array kGermanMail = {"jmueller", "aenne.gross", "kaethe", "g.schaefer"};
constexpr std::array kFrenchFirst = {"François", "Zoë", "Héloïse", "Jérôme", "Noël", "Maëlle"};
constexpr std::array kFrenchLast = {"Lefèvre", "D'Aubigné", "L'Hôpital", "Çelik", "Gagné", "O'Reilly"};
constexpr std::array kFrenchCities = {"Besançon", "Orléans", "Nîmes", "Fécamp"};
constexpr std::array kFrenchStreets = {"rue de l'Église", "allée des Érables", "quai Voltaire",
                                       "place d'Armes"};
constexpr std::array kFrenchMail = {"f.lefevre", "zoe", "heloise.dh", "jerome"};
constexpr std::array kPolishFirst = {"Łukasz", "Małgorzata", "Żaneta", "Zbigniew", "Świętosława", "Grażyna"};
constexpr std::array kPolishLast = {"Wałęsa", "Dąbrowska", "Źrebiec", "Kościuszko", "Gęś", "Nowak"};
constexpr std::array kPolishCities = {"Łódź", "Kraków", "Gdańsk", "Świnoujście"};
constexpr std::array kPolishStreets = {"ul. Święty Marcin", "ul. Długa", "al. Róż", "ul. Źródlana"};
constexpr std::array kPolishMail = {"lukasz", "m.dabrowska", "zaneta.z", "zkos"};
constexpr std::array kGreekFirst = {"Γιώργος", "Ελένη", "Νίκος", "Ασπασία", "Θεόδωρος"};
constexpr std::array kGreekLast = {"Παπαδόπουλος", "Νικολάου", "Αλεξίου", "Καραμανλή", "Ζήση"};
constexpr std::array kGreekCities = {"Αθήνα", "Θεσσαλονίκη", "Πάτρα", "Ηράκλειο"};
constexpr std::array kGreekStreets = {"Οδός Ερμού", "Λεωφόρος Συγγρού", "Πλατεία Ομονοίας", "Οδός Αθηνάς"};
constexpr std::array kGreekMail = {"g.papadopoulos", "eleni", "nikos.a", "aspasia"};
constexpr std::array kRussianFirst = {"Анастасия", "Фёдор", "Юрий", "Любовь", "Ярослав", "Ольга"};
constexpr std::array kRussianLast = {"Достоевский", "Щербакова", "Ёлкин", "Цой", "Соловьёв", "Ильина"};
constexpr std::array kRussianCities = {"Санкт-Петербург", "Москва", "Орёл", "Владивосток"};
constexpr std::array kRussianStreets = {"Невский проспект", "улица Ленина", "Большая Морская",
                                        "Тверская улица"};
constexpr std::array kRussianMail = {"anastasia", "fedor.d", "y.tsoi", "lubov"};
constexpr std::array kJapaneseFirst = {"花子", "太郎", "さくら", "健一", "美咲"};
constexpr std::array kJapaneseLast = {"山田", "佐藤", "鈴木", "髙橋", "渡邊"};
constexpr std::array kJapaneseCities = {"東京都", "京都市", "札幌市", "那覇市"};
constexpr std::array kJapaneseStreets = {"千代田区丸の内", "中京区烏丸通", "中央区大通西", "泉崎一丁目"};
constexpr std::array kJapaneseMail = {"hanako", "taro.sato", "sakura", "kenichi"};
constexpr std::array kHebrewFirst = {"רחל", "משה", "יעל", "אבישי"};
constexpr std::array kHebrewLast = {"כהן", "לוי", "בן־דוד", "מזרחי"};
constexpr std::array kHebrewCities = {"ירושלים", "תל אביב", "חיפה", "באר שבע"};
constexpr std::array kHebrewStreets = {"רחוב יפו", "שדרות רוטשילד", "רחוב הרצל", "דרך חברון"};
constexpr std::array kHebrewMail = {"rachel", "moshe.l", "yael", "avishai"};
constexpr std::array kHindiFirst = {"प्रिया", "अर्जुन", "लक्ष्मी", "विक्रम"};
constexpr std::array kHindiLast = {"शर्मा", "त्रिपाठी", "कृष्णन", "सिंह"};
constexpr std::array kHindiCities = {"मुंबई", "नई दिल्ली", "वाराणसी", "जयपुर"};
constexpr std::array kHindiStreets = {"महात्मा गांधी मार्ग", "चाँदनी चौक", "अस्सी घाट", "हवा महल रोड"};
constexpr std::array kHindiMail = {"priya", "arjun.t", "lakshmi", "vikram"};
constexpr std::array kEnglishFirst = {"Emma", "Robert \"Bob\"", "Mary-Jane", "Liam", "Siân", "Chloe"};
constexpr std::array kEnglishLast = {"O'Brien", "Smith & Daughters", "<Unknown>", "Fitz-Gerald", "Brontë",
                                     "Lee"};
constexpr std::array kEnglishCities = {"London", "St John's", "Reading", "Ystrad Mynach"};
constexpr std::array kEnglishStreets = {"King's Road", "Hope & Anchor Lane", "High Street", "Mill Row"};
constexpr std::array kEnglishMail = {"emma", "bob", "mj.obrien", "liam+list"};

constexpr std::array<Culture, 9> kCultures = {{
    {"Deutschland", kGermanFirst, kGermanLast, kGermanCities, kGermanStreets, kGermanMail, "+49 221"},
    {"France", kFrenchFirst, kFrenchLast, kFrenchCities, kFrenchStreets, kFrenchMail, "+33 3"},
    {"Polska", kPolishFirst, kPolishLast, kPolishCities, kPolishStreets, kPolishMail, "+48 42"},
    {"Ελλάδα", kGreekFirst, kGreekLast, kGreekCities, kGreekStreets, kGreekMail, "+30 210"},
    {"Россия", kRussianFirst, kRussianLast, kRussianCities, kRussianStreets, kRussianMail, "+7 812"},
    {"日本", kJapaneseFirst, kJapaneseLast, kJapaneseCities, kJapaneseStreets, kJapaneseMail, "+81 3"},
    {"ישראל", kHebrewFirst, kHebrewLast, kHebrewCities, kHebrewStreets, kHebrewMail, "+972 2"},
    {"भारत", kHindiFirst, kHindiLast, kHindiCities, kHindiStreets, kHindiMail, "+91 22"},
    {"United Kingdom", kEnglishFirst, kEnglishLast, kEnglishCities, kEnglishStreets, kEnglishMail, "+44 20"},
}};

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

// splitmix64: a handful of lines that give the same numbers everywhere.
class Random {
 public:
  explicit Random(std::uint64_t state) : state_(state) {}

  std::uint64_t next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15u);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }
  int below(int limit) { return static_cast<int>(next() % static_cast<std::uint64_t>(limit)); }
  bool chance(int percent) { return below(100) < percent; }
  std::string pick(Words words) {
    return words[static_cast<std::size_t>(below(static_cast<int>(words.size())))];
  }

 private:
  std::uint64_t state_;
};

class Writer {
 public:
  Writer(std::uint64_t seed, int number)
      : random_(seed * 0x2545F4914F6CDD1Du + static_cast<std::uint64_t>(number)),
        number_(number),
        culture_(kCultures[static_cast<std::size_t>(random_.below(static_cast<int>(kCultures.size())))]) {}

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
    if (culture_.first.data() != kJapaneseFirst.data()) return;
    field("YomiFirstName") = "ハナコ";
    field("YomiLastName") = "ヤマダ";
    maybe(50, "YomiCompanyName", "カブシキガイシャ サクラ");
  }

  std::string phone() {
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), " %03d %04d", random_.below(1000), random_.below(10000));
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
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:00:00.000Z",
                  firstYear + random_.below(years), 1 + random_.below(12), 1 + random_.below(28),
                  random_.chance(70) ? 0 : 22);
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
