#include "host/catalog/SampleLibrary.h"

#include "host/catalog/CatalogBuilder.h"
#include "host/catalog/CleanText.h"
#include "host/catalog/SampleThumbnail.h"

#include <VelkCommon/Text/StringUtils.h>

namespace VelkHost {
namespace {

/// A text in the sample's two languages.
struct Bilingual
{
    std::string_view english;
    std::string_view german;
};

struct SampleItem
{
    std::string_view id;
    Bilingual folder;  ///< the category and the folders below it, separated by "/"
    Bilingual name;
    Bilingual keywords;
    std::string_view strokes;  ///< see drawThumbnail()
    ItemSize size;
};

constexpr Bilingual doors{"Doors and windows/Doors", "Türen und Fenster/Türen"};
constexpr Bilingual windows{"Doors and windows/Windows", "Türen und Fenster/Fenster"};
constexpr Bilingual chairs{"Furniture/Seating/Chairs", "Möbel/Sitzmöbel/Stühle"};
constexpr Bilingual sofas{"Furniture/Seating/Sofas", "Möbel/Sitzmöbel/Sofas"};
constexpr Bilingual tables{"Furniture/Tables", "Möbel/Tische"};
constexpr Bilingual storage{"Furniture/Storage", "Möbel/Schränke"};
constexpr Bilingual beds{"Furniture/Beds", "Möbel/Betten"};
constexpr Bilingual kitchen{"Kitchen", "Küche"};
constexpr Bilingual bathroom{"Bathroom", "Bad"};
constexpr Bilingual lights{"Lighting", "Leuchten"};
constexpr Bilingual stairs{"Stairs", "Treppen"};
constexpr Bilingual outdoor{"Outdoor", "Außenbereich"};

constexpr std::string_view doorPlan = "r4,80,8,12 r84,80,8,12 l12,86,12,12 e-62,12,148,148";
constexpr std::string_view doubleDoorPlan = "r2,80,6,12 r88,80,6,12 l8,84,8,44 l88,84,88,44 l8,44,48,84 l88,44,48,84";
constexpr std::string_view windowPlan = "r4,38,88,20 l4,48,92,48 l48,38,48,58";
constexpr std::string_view chairPlan = "r24,28,48,48 r20,16,56,12";
constexpr std::string_view armchairPlan = "r22,28,52,52 r10,24,12,56 r74,24,12,56 r10,12,76,14";
constexpr std::string_view stoolPlan = "e26,26,44,44 e34,34,28,28";
constexpr std::string_view sofaPlan = "r6,26,84,14 r6,40,10,32 r80,40,10,32 r16,40,32,32 r48,40,32,32";
constexpr std::string_view tablePlan = "r8,24,80,48 l8,24,88,72 l88,24,8,72";
constexpr std::string_view roundTablePlan = "e12,12,72,72 e44,44,8,8";
constexpr std::string_view cabinetPlan = "r12,10,72,76 l48,10,48,86 e40,44,4,8 e52,44,4,8";
constexpr std::string_view shelfPlan = "r16,8,64,80 l16,28,80,28 l16,48,80,48 l16,68,80,68";
constexpr std::string_view bedPlan = "r16,8,64,80 r22,14,24,16 r50,14,24,16 l16,38,80,38";
constexpr std::string_view singleBedPlan = "r26,8,44,80 r32,14,32,16 l26,38,70,38";
constexpr std::string_view hobPlan = "r10,10,76,76 e18,18,24,24 e54,18,24,24 e18,54,24,24 e54,54,24,24";
constexpr std::string_view sinkPlan = "r8,24,80,48 r16,32,34,32 l56,36,82,36 l56,48,82,48 l56,60,82,60";
constexpr std::string_view fridgePlan = "r24,4,48,88 l24,34,72,34 l30,16,30,26 l30,42,30,60";
constexpr std::string_view bathPlan = "r6,24,84,48 r14,30,68,36 e20,44,8,8";
constexpr std::string_view basinPlan = "r14,20,68,56 e24,32,48,36 e45,24,6,6";
constexpr std::string_view toiletPlan = "r28,8,40,20 e26,28,44,56";
constexpr std::string_view lampPlan = "e20,20,56,56 l20,48,76,48 l48,20,48,76";
constexpr std::string_view floorLampPlan = "l48,30,48,84 r30,8,36,24 r34,84,28,4";
constexpr std::string_view stairPlan =
    "r8,30,80,36 l20,30,20,66 l32,30,32,66 l44,30,44,66 l56,30,56,66 l68,30,68,66 l8,48,84,48";
constexpr std::string_view spiralPlan = "e10,10,76,76 e40,40,16,16 l48,10,48,40 l86,48,56,48 l48,86,48,56 l10,48,40,48";
constexpr std::string_view treePlan = "e12,12,72,72 e40,40,16,16 l48,48,80,30 l48,48,20,26 l48,48,52,82";

constexpr SampleItem items[] = {
    {"door-single",
     doors,
     {"Single door", "Einflügelige Tür"},
     {"entry, hinged, wood", "Eingang, Holz"},
     doorPlan,
     {900, 120, 2100}},
    {"door-double",
     doors,
     {"Double door", "Doppeltür"},
     {"entry, hinged, glass", "Eingang, Glas"},
     doubleDoorPlan,
     {1600, 120, 2100}},
    {"door-sliding",
     doors,
     {"Sliding door", "Schiebetür"},
     {"glass, patio", "Glas, Terrasse"},
     windowPlan,
     {2400, 150, 2200}},
    {"door-garage",
     doors,
     {"Garage door", "Garagentor"},
     {"sectional, car", "Sektionaltor, Auto"},
     windowPlan,
     {2500, 200, 2125}},
    {"window-casement",
     windows,
     {"Casement window", "Drehflügelfenster"},
     {"hinged, wood", "Holz"},
     windowPlan,
     {800, 120, 1200}},
    {"window-double",
     windows,
     {"Double window", "Doppelfenster"},
     {"hinged, glass", "Glas"},
     windowPlan,
     {1500, 120, 1200}},
    {"window-roof",
     windows,
     {"Roof window", "Dachfenster"},
     {"attic, skylight", "Dachboden, Oberlicht"},
     windowPlan,
     {780, 140, 1180}},
    {"window-round", windows, {"Round window", "Rundfenster"}, {"porthole", "Bullauge"}, lampPlan, {600, 120, 600}},

    {"chair", chairs, {"Chair", "Stuhl"}, {"seat, wood", "Sitz, Holz"}, chairPlan, {450, 480, 880}},
    {"chair-dining",
     chairs,
     {"Dining chair", "Esszimmerstuhl"},
     {"seat, oak", "Sitz, Eiche"},
     chairPlan,
     {460, 540, 920}},
    {"chair-office",
     chairs,
     {"Office chair", "Bürostuhl"},
     {"seat, desk, swivel", "Sitz, Schreibtisch, drehbar"},
     chairPlan,
     {640, 640, 1180}},
    {"armchair",
     chairs,
     {"Armchair", "Sessel"},
     {"seat, lounge, leather", "Sitz, Leder"},
     armchairPlan,
     {820, 860, 940}},
    {"stool", chairs, {"Stool", "Hocker"}, {"seat", "Sitz"}, stoolPlan, {360, 360, 450}},
    {"stool-bar", chairs, {"Bar stool", "Barhocker"}, {"seat, counter", "Sitz, Theke"}, stoolPlan, {400, 400, 760}},
    {"sofa-2",
     sofas,
     {"Sofa, 2-seat", "Zweisitzer-Sofa"},
     {"couch, living room", "Couch, Wohnzimmer"},
     sofaPlan,
     {1500, 880, 840}},
    {"sofa-3",
     sofas,
     {"Sofa, 3-seat", "Dreisitzer-Sofa"},
     {"couch, living room", "Couch, Wohnzimmer"},
     sofaPlan,
     {2080, 880, 840}},
    {"table-dining",
     tables,
     {"Dining table", "Esstisch"},
     {"oak, kitchen", "Eiche, Küche"},
     tablePlan,
     {1800, 900, 740}},
    {"table-round", tables, {"Round table", "Runder Tisch"}, {"dining", "Essen"}, roundTablePlan, {1200, 1200, 740}},
    {"table-coffee",
     tables,
     {"Coffee table", "Couchtisch"},
     {"glass, living room", "Glas, Wohnzimmer"},
     tablePlan,
     {1100, 600, 430}},
    {"desk",
     tables,
     {"Desk", "Schreibtisch"},
     {"office, work, table", "Büro, Arbeit, Tisch"},
     tablePlan,
     {1600, 800, 720}},
    {"wardrobe",
     storage,
     {"Wardrobe", "Kleiderschrank"},
     {"closet, clothes", "Garderobe, Kleidung"},
     cabinetPlan,
     {1500, 600, 2100}},
    {"bookcase", storage, {"Bookcase", "Bücherregal"}, {"shelf, books", "Regal, Bücher"}, shelfPlan, {900, 300, 2020}},
    {"cabinet-wall", storage, {"Wall cabinet", "Wandschrank"}, {"cupboard", "Schrank"}, cabinetPlan, {600, 350, 720}},
    {"bed-single", beds, {"Single bed", "Einzelbett"}, {"bedroom", "Schlafzimmer"}, singleBedPlan, {1000, 2080, 900}},
    {"bed-double",
     beds,
     {"Double bed", "Doppelbett"},
     {"bedroom, queen size", "Schlafzimmer"},
     bedPlan,
     {1680, 2080, 1000}},
    {"bed-bunk",
     beds,
     {"Bunk bed", "Etagenbett"},
     {"children, bedroom", "Kinder, Schlafzimmer"},
     singleBedPlan,
     {980, 2080, 1650}},

    {"hob", kitchen, {"Hob", "Kochfeld"}, {"cooker, stove, appliance", "Herd, Gerät"}, hobPlan, {590, 520, 55}},
    {"fridge",
     kitchen,
     {"Fridge & freezer", "Kühl- und Gefrierschrank"},
     {"appliance", "Gerät"},
     fridgePlan,
     {600, 650, 1850}},
    {"sink-kitchen",
     kitchen,
     {"Kitchen sink", "Küchenspüle"},
     {"steel, tap", "Stahl, Hahn"},
     sinkPlan,
     {860, 500, 180}},
    {"cabinet-24",
     kitchen,
     {"24\" cabinet", "Unterschrank, 60 cm"},
     {"base unit", "Schrank"},
     cabinetPlan,
     {600, 580, 820}},
    {"bath", bathroom, {"Bathtub", "Badewanne"}, {"bath, tub", "Bad, Wanne"}, bathPlan, {1700, 750, 580}},
    {"basin", bathroom, {"Washbasin", "Waschbecken"}, {"sink, ceramic", "Keramik"}, basinPlan, {600, 480, 170}},
    {"toilet", bathroom, {"Toilet", "WC"}, {"WC, ceramic", "Toilette, Keramik"}, toiletPlan, {370, 540, 420}},
    {"lamp-ceiling",
     lights,
     {"Ceiling lamp", "Deckenleuchte"},
     {"light, LED", "Licht, LED"},
     lampPlan,
     {400, 400, 120}},
    {"lamp-floor",
     lights,
     {"Floor lamp", "Stehleuchte"},
     {"light, reading", "Licht, Lesen"},
     floorLampPlan,
     {280, 280, 1650}},
    {"lamp-table",
     lights,
     {"Table lamp", "Tischleuchte"},
     {"light, desk", "Licht, Schreibtisch"},
     floorLampPlan,
     {220, 220, 480}},
    {"stairs-straight",
     stairs,
     {"Straight stairs", "Gerade Treppe"},
     {"staircase, oak", "Eiche"},
     stairPlan,
     {900, 3600, 2700}},
    {"stairs-spiral",
     stairs,
     {"Spiral staircase", "Wendeltreppe"},
     {"stairs, steel", "Stahl"},
     spiralPlan,
     {1400, 1400, 2700}},
    {"tree", outdoor, {"Tree", "Baum"}, {"garden, plant, oak", "Garten, Pflanze, Eiche"}, treePlan, {3000, 3000, 6000}},
    {"bench",
     outdoor,
     {"Garden bench", "Gartenbank"},
     {"seat, wood, park", "Sitz, Holz, Park"},
     sofaPlan,
     {1500, 620, 850}},
};

}  // namespace

Catalog sampleLibrary(const BuildOptions& options)
{
    const bool german = !languageChain(options.language, {"de"}, fileString(std::string("the sample library"))).empty();
    const auto text = [german](const Bilingual& both) { return german ? both.german : both.english; };

    Catalog header;
    header.id = options.id.empty() ? "velk-sample" : options.id;
    header.name = options.name.empty() ? text({"Sample house", "Musterhaus"}) : std::string_view(options.name);
    header.description =
        text({"A few things of a house, to try searches with", "Einiges aus einem Haus, zum Ausprobieren"});
    header.kind = options.kind;
    header.language = german ? "de" : "en";

    CatalogBuilder builder(fileString(std::string("the sample library")), header);
    for (const SampleItem& sample : items) {
        Item item;
        item.uniqueId = "velk-sample#" + std::string(sample.id);
        item.folder = builder.folder(StringUtils::tokenizeString(text(sample.folder), '/'));
        item.name = text(sample.name);
        item.keywords = joinKeywords({text(sample.keywords)});
        item.thumbnail = drawThumbnail(sample.strokes);
        item.files = {{FileRole::Texture, std::string(sample.id) + ".png"}};
        builder.add(std::move(item), sample.size);
    }
    return builder.finish();
}

}  // namespace VelkHost
