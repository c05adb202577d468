#include "StrokeFont.h"

#include <cstdint>
#include <iterator>

namespace zyl {

namespace {

// The glyphs from the space to "~". Each point is two digits, x and y; "|" separates strokes.
constexpr const char* kStrokes[] = {
    "",                                     // space
    "2024|2626",                            // !
    "1012|3032",                            // "
    "1016|3036|0242|0444",                  // #
    "4111021333443505|2026",                // $
    "4006|0110|4536",                       // %
    "46111020210405162644",                 // &
    "2022",                                 // '
    "30121436",                             // (
    "10323416",                             // )
    "2125|0244|4204",                       // *
    "2125|0343",                            // +
    "2618",                                 // ,
    "1333",                                 // -
    "2626",                                 // .
    "4006",                                 // /
    "103041453616050110",                   // 0
    "112026|1636",                          // 1
    "01103041420646",                       // 2
    "01103041423313|334445361605",          // 3
    "36300444",                             // 4
    "400002324345361605",                   // 5
    "30100105163645443303",                 // 6
    "004016",                               // 7
    "103041423313020110|1304051636454433",  // 8
    "43130201103041453616",                 // 9
    "2323|2626",                            // :
    "2323|2618",                            // ;
    "410345",                               // <
    "0242|0444",                            // =
    "014305",                               // >
    "01103041422324|2626",                  // ?
    "34322224344441301001051646",           // @
    "0602204246|0444",                      // A
    "003041423303|334445360600",            // B
    "4130100105163645",                     // C
    "00304145360600",                       // D
    "40000646|0333",                        // E
    "400006|0333",                          // F
    "41301001051636454323",                 // G
    "0006|4046|0343",                       // H
    "2026|1030|1636",                       // I
    "4045361605",                           // J
    "0006|400346",                          // K
    "000646",                               // L
    "0600234046",                           // M
    "06004640",                             // N
    "103041453616050110",                   // O
    "06003041423303",                       // P
    "103041453616050110|2446",              // Q
    "06003041423303|2346",                  // R
    "413010010213334445361605",             // S
    "0040|2026",                            // T
    "000516364540",                         // U
    "002640",                               // V
    "0016233640",                           // W
    "0046|4006",                            // X
    "002340|2326",                          // Y
    "00400646",                             // Z
    "30101636",                             // [
    "0046",                                 // backslash
    "10303616",                             // ]
    "122032",                               // ^
    "0747",                                 // _
    "1021",                                 // `
    "12324346|441405163645",                // a
    "0006|0312324345361605",                // b
    "4332120305163645",                     // c
    "4046|4332120305163645",                // d
    "04444332120305163645",                 // e
    "40302126|0242",                        // f
    "4247381807|4332120305163645",          // g
    "0006|0312324346",                      // h
    "122226|1636|2020",                     // i
    "223237281807|3030",                    // j
    "0006|4204|2346",                       // k
    "102026|1636",                          // l
    "0206|03122326|23324346",               // m
    "0206|0312324346",                      // n
    "123243453616050312",                   // o
    "0208|0312324345361605",                // p
    "4248|4332120305163645",                // q
    "0206|04223243",                        // r
    "4212031434453606",                     // s
    "20253646|0242",                        // t
    "0205163645|4246",                      // u
    "022642",                               // v
    "0216243642",                           // w
    "0246|4206",                            // x
    "0226|42261808",                        // y
    "02420646",                             // z
    "30212213242536",                       // {
    "2027",                                 // |
    "10212233242516",                       // }
    "04133443",                             // ~
};
constexpr char32_t kFirst = U' ';
static_assert(std::size(kStrokes) == U'~' - U' ' + 1);

constexpr const char* kBox = "0040460600";
constexpr const char* kEllipsis = "0606|2626|4646";

// U+00C0 to U+00FF.
constexpr std::u32string_view kWithoutAccent =
    U"AAAAAAACEEEEIIIIDNOOOOOxOUUUUYPsaaaaaaaceeeeiiiidnooooo/ouuuuypy";
constexpr char32_t kFirstAccent = 0xC0;
static_assert(kWithoutAccent.size() == 64);

const char* Coded(char32_t character) {
  constexpr char32_t kEnDash = 0x2013;
  constexpr char32_t kDots = 0x2026;
  if (character >= kFirstAccent && character < kFirstAccent + kWithoutAccent.size()) {
    character = kWithoutAccent[character - kFirstAccent];
  }
  if (character == kEnDash) character = U'-';
  if (character == kDots) return kEllipsis;
  const bool known = character >= kFirst && character < kFirst + std::size(kStrokes);
  return known ? kStrokes[character - kFirst] : kBox;
}

}  // namespace

std::vector<Stroke> StrokesOf(char32_t character) {
  std::vector<Stroke> strokes;
  const char* coded = Coded(character);
  if (*coded == '\0') return strokes;
  strokes.emplace_back();
  for (; *coded != '\0'; ++coded) {
    if (*coded == '|') {
      strokes.emplace_back();
    } else {
      strokes.back().push_back({coded[0] - '0', coded[1] - '0'});
      ++coded;
    }
  }
  return strokes;
}

std::u32string DecodeUtf8(std::string_view text) {
  constexpr char32_t kReplacement = 0xFFFD;
  std::u32string characters;
  for (size_t i = 0; i < text.size();) {
    const auto first = static_cast<uint8_t>(text[i]);
    const size_t length = first < 0x80   ? 1
                          : first < 0xC2 ? 0
                          : first < 0xE0 ? 2
                          : first < 0xF0 ? 3
                          : first < 0xF5 ? 4
                                         : 0;
    char32_t character = length < 2 ? first : first & (0x7Fu >> length);
    bool whole = length > 0 && i + length <= text.size();
    for (size_t k = 1; whole && k < length; ++k) {
      const auto next = static_cast<uint8_t>(text[i + k]);
      whole = (next & 0xC0) == 0x80;
      character = character << 6 | (next & 0x3Fu);
    }
    characters.push_back(whole ? character : kReplacement);
    i += whole ? length : 1;
  }
  return characters;
}

}  // namespace zyl
