#include "data/SeedTexts.h"

#include <array>

#include "items/ItemClass.h"

namespace demoserver {
namespace {

constexpr std::array kSubjects = {"Projektbesprechung",
                                  "Déjeuner d'équipe",
                                  "Совещание по бюджету",
                                  "定例会議",
                                  "Review of <draft> & budget",
                                  "Ετήσια έκθεση",
                                  "פגישת צוות",
                                  "\"Quarterly\" numbers",
                                  "साप्ताहिक बैठक",
                                  "Überraschungsfeier 🎉",
                                  "Dentist",
                                  "Zebranie zarządu"};
constexpr std::array kPlaces = {"Raum 4.12",    "Salle Médicis", "Конференц-зал", "会議室A",
                                "Room <3> & 4", "Αίθουσα 2",     "חדר 7",         "By the \"old\" oak"};
constexpr std::array kCategories = {"Work", "Privat", "Важное", "仕事", "R&D", "Fête"};
constexpr std::array kSentences = {"Please read this before we meet; the numbers > 100 matter. ",
                                   "Bitte die Unterlagen spätestens am Vortag prüfen.\r\n",
                                   "Повестка дня: «бюджет» & сроки. ",
                                   "資料は前日までに共有してください。",
                                   "Le café sera servi à l'étage <2>.\r\n",
                                   "Ευχαριστώ πολύ για τη βοήθεια! "};
constexpr const char* kLongSentence = "長い本文は途中で切られます。Ünïcödé überall — и здесь тоже.\r\n";

}  // namespace

std::string pickSubject(Random& random) { return random.pick(kSubjects); }
std::string pickPlace(Random& random) { return random.pick(kPlaces); }
std::string pickCategory(Random& random) { return random.pick(kCategories); }

std::string someText(Random& random, int sentences) {
  std::string text;
  for (; sentences > 0; --sentences) text += random.pick(kSentences);
  return text;
}

std::string longText(Random& random, int truncation) {
  std::string text = someText(random, 1 + random.below(3));
  while (text.size() <= bodyLimitOf(truncation)) text += kLongSentence;
  return text;
}

}  // namespace demoserver
