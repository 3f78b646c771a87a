"""Which manuals there are: those on the disc, and those that the workshop's computer already has."""
from dataclasses import dataclass, replace

from .pictures import Look

CAR = (
    "general",
    "engine",
    "cooling",
    "fuel",
    "transmission",
    "steering",
    "suspension",
    "brakes",
    "electrical",
    "climate",
    "body",
    "maintenance",
)
ELECTRIC_CAR = (
    "general",
    "highvoltage",
    "motor",
    "steering",
    "suspension",
    "brakes",
    "electrical",
    "climate",
    "body",
    "maintenance",
)


@dataclass(frozen=True)
class Manual:
    folder: str
    publication: str
    version: int
    model_id: str
    model: str
    year: int
    kind: str  # the classification shown in the result list
    issued: str  # yyyy/mm
    look: Look
    torque: float = 1.0
    text: str = "workshop.en.txt"
    chapters: tuple = CAR
    country: str = "EU"
    language: str = "EN"
    compared: bool = False  # brings a comparison set against the edition before
    pdf: bool = False
    native_names: bool = False  # chapters and pages are files named in the manual's language

    @property
    def title(self):
        return f"{self.model} {self.year}"


TALIS = Manual("Talis2019_Workshop_EN", "K1211MM", 1, "TLS", "Talis", 2019, "Workshop", "2023/09", Look("#c65d3b", 4))
MERIVO = Manual(
    "Merivo2020_Workshop_EN", "K2310MM", 1, "MRV", "Merivo", 2020, "Workshop", "2023/10", Look("#4f8a5b", 3), 0.95
)
BRESCOT = Manual(
    "Brescot2018_Workshop_EN", "K3420MM", 5, "BRS", "Brescot", 2018, "Workshop", "2023/08", Look("#a8803c", 4), 1.25
)
ONDARI = Manual(
    "Ondari2021_Workshop_EN",
    "K4710MM",
    4,
    "OND",
    "Ondari",
    2021,
    "Workshop",
    "2023/10",
    Look("#3f7ca6", 4),
    1.1,
    compared=True,
)
KESTREN = Manual(
    "Kestren2017_Workshop_EN", "K5150MM", 2, "KES", "Kestren", 2017, "Workshop", "2022/05", Look("#76607f", 6), 1.15
)
LUMEA = Manual(
    "Lumea2022_Electric_EN_1",
    "K6231EV",
    1,
    "LUM",
    "Lumea",
    2022,
    "Workshop",
    "2022/11",
    Look("#2f9a9a", 4),
    chapters=ELECTRIC_CAR,
)
FUYUNE = Manual(
    "フユネ2021_整備書",
    "K7810JP",
    1,
    "FUY",
    "フユネ",
    2021,
    "整備書",
    "2023/07",
    Look("#b24a6b", 3),
    0.9,
    "workshop.ja.txt",
    (),
    "JP",
    "JA",
    native_names=True,
)
TALIS_WIRING = Manual(
    "Talis2019_Wiring_JA",
    "K1220WJ",
    1,
    "TLS",
    "タリス",
    2019,
    "配線図集",
    "2023/07",
    Look("#c65d3b", 4),
    1.0,
    "wiring.ja.txt",
    (),
    "JP",
    "JA",
)
HALDEN = Manual(
    "Halden2016_Body_EN",
    "K9310BR",
    7,
    "HLD",
    "Halden",
    2016,
    "Body",
    "2023/06",
    Look("#8a6a4a", 4),
    chapters=("general", "body", "electrical", "climate"),
)
DIAGNOSIS = Manual(
    "Diagnosis2023_PDF", "K8040PD", 2, "ALL", "All models", 2023, "Diagnosis", "2023/10", Look("#14293d", 4), pdf=True
)

DISC = (TALIS, MERIVO, BRESCOT, ONDARI, KESTREN, LUMEA, FUYUNE, TALIS_WIRING, HALDEN, DIAGNOSIS)

# In the order in which they were installed. The disc then meets an edition two older, one older that it has a
# comparison set for, one older that it has none for, the same edition, a later revision, and the base of a later one.
INSTALLED = (
    replace(HALDEN, version=6),
    replace(TALIS, folder="Talis2018_Workshop_EN", publication="K1210MM", version=4, year=2018),
    replace(KESTREN),
    replace(BRESCOT, version=3),
    replace(LUMEA, folder="Lumea2022_Electric_EN_3", publication="K6233EV"),
    replace(ONDARI, version=3, compared=False),
)
