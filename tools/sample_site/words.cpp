#include "tools/sample_site/words.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace sample {

namespace {

using Words = std::string_view;

constexpr std::array<Words, 20> CompanyFirst{
    "ALDERBROOK", "BLUE MESA",  "CINDER HILL", "DUNMORROW", "EASTFALLOW", "FERNLEIGH", "GRANITE BEND",
    "HOLLOWAY",   "IRONWOOD",   "JUNIPER",     "KETTERLY",  "LARKSPUR",   "MILLRACE",  "NORTHGATE",
    "OAKSHOTT",   "PINE RIDGE", "QUARRYMAN",   "REDFIELD",  "STONEHAVEN", "TAMARACK"};
constexpr std::array<Words, 12> CompanySecond{"HAULAGE",  "FARM SUPPLY", "LOGGING",   "FREIGHT",
                                              "DAIRY",    "GRAVEL",      "TRANSPORT", "ORCHARDS",
                                              "BUILDERS", "MILLWORKS",   "TOWING",    "RENTALS"};
constexpr std::array<Words, 4> CompanyForm{"INC", "CO", "AND SONS", "LTD"};

constexpr std::array<Words, 16> FirstNames{"Agnes",  "Bertil", "Clara",   "Dorian", "Edith", "Felipe",
                                           "Greta",  "Horace", "Ines",    "Jonas",  "Karin", "Lionel",
                                           "Mathis", "Nadia",  "Orville", "Petra"};
constexpr std::array<Words, 18> LastNames{"Abbott",
                                          "Br\xE4uer",
                                          "Castell",
                                          "Dubrow",
                                          "Espinel",
                                          "Fairweather",
                                          "Garr\xF3n",
                                          "Hollis",
                                          "Ivers",
                                          "J\xF8rgens",
                                          "Kessel",
                                          "Lindqvist",
                                          "Marlowe",
                                          "N\xFA\xF1"
                                          "ez",
                                          "O'Dell",
                                          "Pruitt",
                                          "Quimby",
                                          "Rask"};

// Words of two letters would be taken for a state in an address that has none.
constexpr std::array<Words, 12> Streets{
    "HARBOR VIEW ROAD", "MILL LANE",  "FOUNDRY STREET", "ORCHARD AVENUE", "RAILWAY PARADE", "QUARRY ROAD",
    "CHAPEL STREET",    "FERRY LANE", "MARKET SQUARE",  "VIADUCT ROAD",   "CANAL STREET",   "WEIR LANE"};
constexpr std::array<Words, 16> Cities{
    "ASHCOMBE", "BRANDLEY",    "COLDWATER", "DRAYBORO", "ELMHOLLOW", "FOXTON",   "GILDERSEN", "HAVERTON",
    "INGLEBY",  "JASPERVILLE", "KINGSMEAD", "LOWFORD",  "MARSHFELL", "NETHERBY", "OVERDALE",  "PIKESTON"};
constexpr std::array<Words, 12> States{"IL", "OH", "TX", "WA", "GA", "ME",
                                       "NM", "KS", "UT", "VA", "MN", "OR"};
constexpr std::array<Words, 4> Countries{"ONTARIO CANADA", "SONORA MEXICO", "ALBERTA CANADA",
                                         "QUEBEC CANADA"};

constexpr std::array<Words, 14> PartFirst{"FUEL",  "BRAKE", "WATER", "CLUTCH", "AXLE",  "CABIN", "VALVE",
                                          "STEER", "LAMP",  "HUB",   "TURBO",  "DRIVE", "WIPER", "HEATER"};
constexpr std::array<Words, 14> PartSecond{"FILTER",  "PUMP",   "GASKET",  "BRACKET", "SEAL KIT",
                                           "HOUSING", "HOSE",   "BEARING", "LENS",    "MOTOR",
                                           "SHAFT",   "SENSOR", "BUSHING", "CLAMP"};
constexpr std::array<Words, 10> Remarks{"CUSTOMER WILL CALL",      "HOLD FOR CREDIT",   "CORE RETURNED",
                                        "BACK ORDER 3 OF 5",       "SEE PRIOR INVOICE", "DELIVER TO YARD 2",
                                        "PRICE MATCHED",           "CHECK SERIAL NO.",  "DAMAGED CARTON",
                                        "TECH REPORTS NOISE-FRONT"};
constexpr std::array<Words, 10> NoteLines{"Spoke with the parts desk, will ring back Monday.",
                                          "Wants the old core credited against the next order.",
                                          "Asked for a copy of the statement.",
                                          "Fleet discount agreed: 7\xBD % until June.",
                                          "Caf\xE9 account moved to the new store.",
                                          "Do not ship on Fridays.",
                                          "Paid by cheque, see file drawer 4\\B.",
                                          "Prefers \x93"
                                          "after hours\x94 pick-up.",
                                          "Unit 12:\tturbo replaced under warranty.",
                                          "Complained about freight charges \x96 waived once."};

constexpr std::size_t LineLength = 30;
constexpr std::size_t AddressLength = 4 * LineLength;
constexpr const char* NoPostalCode = "     -    ";

std::string Text(Random& random, std::span<const Words> words) {
    return std::string(random.Pick(words));
}

std::string Digits(Random& random, int count) {
    std::string digits;
    for (int i = 0; i < count; ++i) digits += static_cast<char>('0' + random.Below(10));
    return digits;
}

void AppendLine(std::string& text, std::string_view line) {
    const std::size_t end = (text.size() / LineLength + 1) * LineLength;
    text += line.substr(0, LineLength);
    text.resize(end, ' ');
}

std::string HouseNumber(Random& random) {
    return std::to_string(random.Between(1, 9999));
}

struct PostalForm {
    std::string Written;
    std::string Exported;
};

/// Postal codes as clerks write them; six digits are read as the first five.
PostalForm MakePostalCode(Random& random) {
    constexpr std::int64_t Forms = 5;
    const std::string five = Digits(random, 5);
    const std::string four = Digits(random, 4);
    switch (random.Below(Forms)) {
        case 0:
            return {five + "-" + four, five + "-" + four};
        case 1:
            return {five + four, five + four};
        case 2:
            return {five + four.substr(0, 1), five};
        default:
            return {five, five};
    }
}

/// Without a postal code the house number is taken for one, because it reaches the start of the address.
Address MakeForeignAddress(Random& random) {
    const std::string number = random.OneIn(2) ? HouseNumber(random) : "";
    Address address{"", "  ", number.empty() ? NoPostalCode : number};
    AppendLine(address.Text, number.empty() ? Text(random, Streets) : number + " " + Text(random, Streets));
    AppendLine(address.Text, Text(random, Cities));
    AppendLine(address.Text, Text(random, Countries));
    return address;
}

Address MakeHomeAddress(Random& random) {
    const PostalForm postal = MakePostalCode(random);
    Address address{"", Text(random, States), postal.Exported};
    AppendLine(address.Text, HouseNumber(random) + " " + Text(random, Streets));
    AppendLine(address.Text, Text(random, Cities) + " " + address.State + " " + postal.Written);
    return address;
}

}  // namespace

Address MakeAddress(Random& random) {
    constexpr std::int64_t ForeignChances = 12;
    constexpr std::int64_t RoutingLineChances = 10;
    Address address = random.OneIn(ForeignChances) ? MakeForeignAddress(random) : MakeHomeAddress(random);
    address.Text.resize(AddressLength, ' ');
    // A fourth line that begins with a full stop is the carrier's and no part of the address.
    if (random.OneIn(RoutingLineChances)) {
        address.Text.resize(AddressLength - LineLength);
        AppendLine(address.Text, ".ROUTE " + Digits(random, 5) + " ZZ DOCK " + Digits(random, 1));
    }
    return address;
}

std::string CompanyName(Random& random) {
    return Text(random, CompanyFirst) + " " + Text(random, CompanySecond) + " " + Text(random, CompanyForm);
}

std::string PersonName(Random& random) {
    return Text(random, FirstNames) + " " + Text(random, LastNames);
}

std::string PartDescription(Random& random) {
    return Text(random, PartFirst) + " " + Text(random, PartSecond) + ", " + Digits(random, 3) + "-" +
           Digits(random, 2);
}

std::string Phone(Random& random) {
    return Digits(random, 3) + "-" + Digits(random, 4);
}

std::string Remark(Random& random) {
    return Text(random, Remarks);
}

std::string NoteText(Random& random, std::size_t longest) {
    constexpr std::int64_t MostLines = 6;
    std::string note;
    for (std::int64_t lines = random.Between(1, MostLines); lines > 0; --lines) {
        const std::string line = Text(random, NoteLines) + "\r\n";
        if (note.size() + line.size() > longest) break;
        note += line;
    }
    return note;
}

}  // namespace sample
