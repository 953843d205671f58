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
    {"door-single", doors, {"Single door", "Einflügelige Tür"}, {"entry, hinged, wood", "Eingang, Holz"}, doorPlan},
    {"door-double", doors, {"Double door", "Doppeltür"}, {"entry, hinged, glass", "Eingang, Glas"}, doubleDoorPlan},
    {"door-sliding", doors, {"Sliding door", "Schiebetür"}, {"glass, patio", "Glas, Terrasse"}, windowPlan},
    {"door-garage", doors, {"Garage door", "Garagentor"}, {"sectional, car", "Sektionaltor, Auto"}, windowPlan},
    {"window-casement", windows, {"Casement window", "Drehflügelfenster"}, {"hinged, wood", "Holz"}, windowPlan},
    {"window-double", windows, {"Double window", "Doppelfenster"}, {"hinged, glass", "Glas"}, windowPlan},
    {"window-roof", windows, {"Roof window", "Dachfenster"}, {"attic, skylight", "Dachboden, Oberlicht"}, windowPlan},
    {"window-round", windows, {"Round window", "Rundfenster"}, {"porthole", "Bullauge"}, lampPlan},

    {"chair", chairs, {"Chair", "Stuhl"}, {"seat, wood", "Sitz, Holz"}, chairPlan},
    {"chair-dining", chairs, {"Dining chair", "Esszimmerstuhl"}, {"seat, oak", "Sitz, Eiche"}, chairPlan},
    {"chair-office",
     chairs,
     {"Office chair", "Bürostuhl"},
     {"seat, desk, swivel", "Sitz, Schreibtisch, drehbar"},
     chairPlan},
    {"armchair", chairs, {"Armchair", "Sessel"}, {"seat, lounge, leather", "Sitz, Leder"}, armchairPlan},
    {"stool", chairs, {"Stool", "Hocker"}, {"seat", "Sitz"}, stoolPlan},
    {"stool-bar", chairs, {"Bar stool", "Barhocker"}, {"seat, counter", "Sitz, Theke"}, stoolPlan},
    {"sofa-2", sofas, {"Sofa, 2-seat", "Zweisitzer-Sofa"}, {"couch, living room", "Couch, Wohnzimmer"}, sofaPlan},
    {"sofa-3", sofas, {"Sofa, 3-seat", "Dreisitzer-Sofa"}, {"couch, living room", "Couch, Wohnzimmer"}, sofaPlan},
    {"table-dining", tables, {"Dining table", "Esstisch"}, {"oak, kitchen", "Eiche, Küche"}, tablePlan},
    {"table-round", tables, {"Round table", "Runder Tisch"}, {"dining", "Essen"}, roundTablePlan},
    {"table-coffee", tables, {"Coffee table", "Couchtisch"}, {"glass, living room", "Glas, Wohnzimmer"}, tablePlan},
    {"desk", tables, {"Desk", "Schreibtisch"}, {"office, work, table", "Büro, Arbeit, Tisch"}, tablePlan},
    {"wardrobe", storage, {"Wardrobe", "Kleiderschrank"}, {"closet, clothes", "Garderobe, Kleidung"}, cabinetPlan},
    {"bookcase", storage, {"Bookcase", "Bücherregal"}, {"shelf, books", "Regal, Bücher"}, shelfPlan},
    {"cabinet-wall", storage, {"Wall cabinet", "Wandschrank"}, {"cupboard", "Schrank"}, cabinetPlan},
    {"bed-single", beds, {"Single bed", "Einzelbett"}, {"bedroom", "Schlafzimmer"}, singleBedPlan},
    {"bed-double", beds, {"Double bed", "Doppelbett"}, {"bedroom, queen size", "Schlafzimmer"}, bedPlan},
    {"bed-bunk", beds, {"Bunk bed", "Etagenbett"}, {"children, bedroom", "Kinder, Schlafzimmer"}, singleBedPlan},

    {"hob", kitchen, {"Hob", "Kochfeld"}, {"cooker, stove, appliance", "Herd, Gerät"}, hobPlan},
    {"fridge", kitchen, {"Fridge & freezer", "Kühl- und Gefrierschrank"}, {"appliance", "Gerät"}, fridgePlan},
    {"sink-kitchen", kitchen, {"Kitchen sink", "Küchenspüle"}, {"steel, tap", "Stahl, Hahn"}, sinkPlan},
    {"cabinet-24", kitchen, {"24\" cabinet", "Unterschrank, 60 cm"}, {"base unit", "Schrank"}, cabinetPlan},
    {"bath", bathroom, {"Bathtub", "Badewanne"}, {"bath, tub", "Bad, Wanne"}, bathPlan},
    {"basin", bathroom, {"Washbasin", "Waschbecken"}, {"sink, ceramic", "Keramik"}, basinPlan},
    {"toilet", bathroom, {"Toilet", "WC"}, {"WC, ceramic", "Toilette, Keramik"}, toiletPlan},
    {"lamp-ceiling", lights, {"Ceiling lamp", "Deckenleuchte"}, {"light, LED", "Licht, LED"}, lampPlan},
    {"lamp-floor", lights, {"Floor lamp", "Stehleuchte"}, {"light, reading", "Licht, Lesen"}, floorLampPlan},
    {"lamp-table", lights, {"Table lamp", "Tischleuchte"}, {"light, desk", "Licht, Schreibtisch"}, floorLampPlan},
    {"stairs-straight", stairs, {"Straight stairs", "Gerade Treppe"}, {"staircase, oak", "Eiche"}, stairPlan},
    {"stairs-spiral", stairs, {"Spiral staircase", "Wendeltreppe"}, {"stairs, steel", "Stahl"}, spiralPlan},
    {"tree", outdoor, {"Tree", "Baum"}, {"garden, plant, oak", "Garten, Pflanze, Eiche"}, treePlan},
    {"bench", outdoor, {"Garden bench", "Gartenbank"}, {"seat, wood, park", "Sitz, Holz, Park"}, sofaPlan},
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
        builder.add(std::move(item));
    }
    return builder.finish();
}

}  // namespace VelkHost
