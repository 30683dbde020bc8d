#include "data/SeedPeople.h"

#include <algorithm>
#include <array>

namespace demoserver {
namespace {

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
    {"日本", kJapaneseFirst, kJapaneseLast, kJapaneseCities, kJapaneseStreets, kJapaneseMail, "+81 3", true},
    {"ישראל", kHebrewFirst, kHebrewLast, kHebrewCities, kHebrewStreets, kHebrewMail, "+972 2"},
    {"भारत", kHindiFirst, kHindiLast, kHindiCities, kHindiStreets, kHindiMail, "+91 22"},
    {"United Kingdom", kEnglishFirst, kEnglishLast, kEnglishCities, kEnglishStreets, kEnglishMail, "+44 20"},
}};

}  // namespace

const Culture& pickCulture(Random& random) {
  return kCultures[static_cast<std::size_t>(random.below(static_cast<int>(kCultures.size())))];
}

Person pickPerson(Random& random) {
  const Culture& culture = pickCulture(random);
  std::string name = random.pick(culture.first) + " " + random.pick(culture.last);
  std::replace(name.begin(), name.end(), '"', '\'');
  return {name, random.pick(culture.mail) + "@example.org"};
}

}  // namespace demoserver
