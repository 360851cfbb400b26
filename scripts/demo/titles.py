"""The books and audiobooks of the demo. Titles, authors and all else are invented."""

from dataclasses import dataclass

READ, READING, WANTED, DROPPED = "read", "currently-reading", "to-read", "did-not-finish"


@dataclass(frozen=True)
class Title:
    title: str
    author: str
    shelf: str = READ
    rating: int = 0
    pages: int = 0
    year: int = 0
    average: float = 0
    series: str = ""  # as the service writes it behind the title
    notes: str = ""
    tags: tuple[str, ...] = ()
    summary: str = ""
    covered: bool = True
    stored: bool = True  # in the library at the start; the others arrive with the first sync


TITLES = [
    Title("The Lantern Tide", "Marit Osvald", READING, 0, 412, 2024, 4.21, "The Far Lights, #3",
          summary="The last keeper of a drowned coast keeps her lamp burning for a ship that may have been a story."),
    Title("A Grammar of Snow", "Ilse Varga", READING, 0, 288, 2023, 3.97,
          summary="Eleven words for weather, and the one winter in which all of them were needed."),
    Title("Bread for the Ferryman", "Tomas Ekelund", READING, 0, 336, 2025, 4.05, tags=("slow",)),

    Title("The Salt Road", "Ada Lindqvist", READ, 5, 384, 2019, 4.33, "Coast Songs, #1",
          "Read aloud to the children, twice.", ("sea", "favourites"),
          "Two sisters carry a dead man's salt over the mountains, and bargain for it in every village."),
    Title("Nine Winters in Harrow Bay", "Ada Lindqvist", READ, 4, 402, 2021, 4.18, "Coast Songs, #2", tags=("sea",)),
    Title("The Glass Orchard", "Piet Aalders", READ, 4, 271, 2018, 3.88, tags=("gardens",)),
    Title("Cartographers of Rain", "Yusra Benali", READ, 5, 448, 2022, 4.41, notes="The chapter on the delta!",
          tags=("favourites", "maps")),
    Title("How to Keep a Lighthouse", "Owen Tarrant", READ, 3, 198, 2011, 3.61, tags=("sea",)),
    Title("The Clockmaker's Apology", "Renata Sorel", READ, 4, 356, 2016, 4.02),
    Title("Small Gods of the Allotment", "Wilf Ashdown", READ, 5, 240, 2020, 4.27, tags=("gardens", "funny")),
    Title("Kåseri på Ærø", "Søren Højgaard", READ, 4, 176, 2009, 3.79, notes="Læst på færgen.", tags=("islands",)),
    Title("A Murmur of Starlings", "Niamh Corrigan", READ, 3, 312, 2015, 3.92),
    Title("The Quiet Arithmetic", "Devika Rao", READ, 5, 224, 2023, 4.36, tags=("essays", "favourites")),
    Title("Letters to a Cold Star", "Anselm Brandt", READ, 2, 420, 2014, 3.44),
    Title("The Beekeeper of Vinkel", "Jorunn Hesk", READ, 4, 298, 2017, 4.01),
    Title("An Inventory of Doors", "Lucía Peralta", READ, 5, 190, 2022, 4.22, tags=("essays",)),
    Title("Under the Paper Mountain", "Haruto Minase", READ, 4, 364, 2013, 4.09),
    Title("The Understudy's Notebook", "Camille Aubry", READ, 3, 256, 2019, 3.70),
    Title("Tin Whistle, Silver River", "Niamh Corrigan", READ, 4, 288, 2018, 4.04),
    Title("The Museum of Ordinary Light", "Petra Holub", READ, 5, 332, 2024, 4.45, tags=("favourites",),
          notes="Buy a copy for Ida."),
    Title("Seven Kinds of Silence", "Devika Rao", READ, 4, 208, 2020, 4.11, tags=("essays",)),
    Title("The Last Tram to Elmstead", "Wilf Ashdown", READ, 3, 276, 2012, 3.83),
    Title("Ropewalk", "Owen Tarrant", READ, 4, 344, 2016, 3.99, tags=("sea",)),
    Title("The Fox in the Observatory", "Marit Osvald", READ, 5, 396, 2020, 4.30, "The Far Lights, #1"),
    Title("A Harbour for Comets", "Marit Osvald", READ, 4, 408, 2022, 4.25, "The Far Lights, #2"),
    Title("Thirteen Ways to Fold a Map", "Yusra Benali", READ, 4, 232, 2017, 4.06, tags=("maps", "essays")),
    Title("The Winter Kitchen", "Ilse Varga", READ, 3, 264, 2015, 3.75),
    Title("Where the Herons Wait", "Jorunn Hesk", READ, 4, 318, 2021, 4.14, tags=("birds",)),
    Title("Blue Hour, Empty Platform", "Camille Aubry", READ, 2, 244, 2010, 3.38),
    Title("The Ink Tax", "Renata Sorel", READ, 4, 372, 2019, 4.00),
    Title("Café Méridien", "Émile Garrigue", READ, 3, 212, 2008, 3.66),
    Title("The Weight of Feathers and Iron", "Tomas Ekelund", READ, 4, 430, 2018, 4.08),
    Title("A Field Guide to Lost Rivers", "Owen Tarrant", READ, 5, 286, 2023, 4.38, tags=("maps", "favourites")),
    Title("Saltmarsh Elegies", "Ada Lindqvist", READ, 3, 96, 2012, 3.90, tags=("poems",)),
    Title("The Physician of Querrow", "Anselm Brandt", READ, 4, 468, 2011, 4.03, "The Querrow Cases, #1"),
    Title("The Advocate of Querrow", "Anselm Brandt", READ, 3, 451, 2013, 3.87, "The Querrow Cases, #2"),
    Title("Moth Season", "Lucía Peralta", READ, 4, 228, 2019, 3.95),
    Title("Ten Thousand Paper Boats", "Haruto Minase", READ, 5, 302, 2017, 4.28),
    Title("The Orchestra of Small Machines", "Petra Holub", READ, 4, 346, 2021, 4.12),
    Title("Stone, Thread, Water", "Devika Rao", READ, 4, 188, 2016, 4.07, tags=("essays",)),
    Title("The Night Gardener's Almanac", "Wilf Ashdown", READ, 3, 252, 2023, 3.85, tags=("gardens",)),
    Title("Öland in Four Weathers", "Åsa Wikström", READ, 4, 206, 2014, 3.98, tags=("islands",)),
    Title("Requiem for a Typewriter", "Émile Garrigue", READ, 2, 234, 2006, 3.41),
    Title("The Ferry Between", "Jorunn Hesk", READ, 4, 274, 2018, 4.02),
    Title("A Short History of Waiting", "Camille Aubry", READ, 5, 218, 2022, 4.19, tags=("essays",)),
    Title("The Amber Ledger", "Renata Sorel", READ, 3, 388, 2015, 3.80),
    Title("Nightingale Terrace", "Niamh Corrigan", READ, 4, 326, 2020, 4.05, tags=("birds",)),
    Title("The Collector of Fog", "Petra Holub", READ, 4, 294, 2018, 4.10),
    Title("夜行列車の栞", "南瀬 春人", READ, 5, 248, 2016, 4.26, notes="Bookmark of the night train.", covered=False),
    Title("الطريق إلى البحر", "يسرى بن علي", READ, 4, 232, 2019, 4.13, covered=False),
    Title("On the Proper Care and Reading of Tide Tables, with Some Account of the Author's Three Attempts to Cross the "
          "Sound on Foot, and What Was Said to Him Afterwards by His Wife", "Bartholomew Quill", READ, 4, 612, 2004, 3.94,
          covered=False, tags=("sea", "funny")),

    Title("The Cartwright's Daughter", "Ilse Varga", WANTED, 0, 340, 2024, 4.15),
    Title("Low Sun over Vesterhavn", "Søren Højgaard", WANTED, 0, 280, 2025, 4.00),
    Title("The Unfinished Bridge", "Tomas Ekelund", WANTED, 0, 358, 2020, 3.91),
    Title("Songs for a Broken Loom", "Yusra Benali", WANTED, 0, 262, 2024, 4.24),
    Title("Every Bell in Prague", "Petra Holub", WANTED, 0, 376, 2019, 4.06),
    Title("The Astronomer's Housekeeper", "Åsa Wikström", WANTED, 0, 314, 2021, 4.17),
    Title("Goodnight, Meridian", "Lucía Peralta", WANTED, 0, 222, 2025, 3.89),
    Title("The Hollow Almanac", "Bartholomew Quill", WANTED, 0, 504, 2007, 3.73, covered=False),
    Title("Driftglass", "Marit Osvald", WANTED, 0, 184, 2016, 4.03),
    Title("The Witness of Querrow", "Anselm Brandt", WANTED, 0, 472, 2016, 3.96, "The Querrow Cases, #3"),

    Title("A Theory of Dust", "Anselm Brandt", DROPPED, 1, 690, 2010, 3.12),
    Title("The Committee of Crows", "Wilf Ashdown", DROPPED, 2, 296, 2009, 3.55, tags=("birds",)),
    Title("Interior with Thunder", "Émile Garrigue", DROPPED, 0, 410, 2003, 3.29),

    Title("The Tidekeeper's Supper", "Ada Lindqvist", WANTED, 0, 366, 2026, 4.40, "Coast Songs, #3", stored=False),
    Title("Twelve Rooms of Honey", "Jorunn Hesk", WANTED, 0, 290, 2026, 4.02, stored=False),
    Title("An Atlas of Borrowed Places", "Yusra Benali", READ, 5, 310, 2025, 4.37, stored=False),
    Title("The Second Violin", "Camille Aubry", READ, 4, 246, 2024, 3.99, stored=False),
    Title("Hush & Thunder", "Niamh Corrigan", READ, 3, 328, 2022, 3.86, stored=False),
    Title("Straße ohne Namen", "Jürgen Weißkopf", WANTED, 0, 254, 2018, 3.93, stored=False),
]


@dataclass(frozen=True)
class Recording:
    title: str
    author: str
    narrator: str
    minutes: int = 0
    percent: float = 0  # listened to
    finished: bool = False
    series: str = ""
    number: int | None = None
    year: int = 2022
    summary: str = ""


# What the audiobook application has; it arrives with the first sync.
OWNED = [
    Recording("The Lantern Tide", "Marit Osvald", "Solveig Brae", 812, 41, series="The Far Lights", number=3),
    Recording("The Fox in the Observatory", "Marit Osvald", "Solveig Brae", 776, 100, True, "The Far Lights", 1),
    Recording("A Harbour for Comets", "Marit Osvald", "Solveig Brae", 798, 100, True, "The Far Lights", 2),
    Recording("Cartographers of Rain", "Yusra Benali", "Idris Okafor", 905, 100, True, year=2022,
              summary="A river changes its mind, and the people who draw it must change theirs."),
    Recording("The Salt Road", "Ada Lindqvist", "Hedda Moen", 690, 100, True, "Coast Songs", 1),
    Recording("Small Gods of the Allotment", "Wilf Ashdown", "Percy Lumb", 431, 12),
    Recording("Ropewalk", "Owen Tarrant", "Percy Lumb", 604),
    Recording("The Quiet Arithmetic", "Devika Rao", "Devika Rao", 388, 100, True),
    Recording("Night Ferry to Sorrow Island", "Tomas Ekelund", "Hedda Moen", 555, 67.4),
    Recording("The Weather Choir", "Niamh Corrigan", "Aoife Brannigan", 497),
    Recording("Eleven Lighthouses, One Dog", "Owen Tarrant", "Percy Lumb", 362, 100, True),
    Recording("Straße ohne Namen", "Jürgen Weißkopf", "Klara Winter", 512),
]

# What the catalogues know beyond the reader's own, to be found by searching.
CATALOGUED = [
    Title("The Tidal Clock", "Marit Osvald", pages=344, year=2014),
    Title("A Field Guide to Lost Umbrellas", "Camille Aubry", pages=212, year=2020),
    Title("The Orchard Keeper's Daughter", "Piet Aalders", pages=388, year=2011),
    Title("Winter Wheat, Summer Thunder", "Ilse Varga", pages=296, year=2018),
    Title("The Harbourmaster's Cat", "Owen Tarrant", pages=176, year=2023),
    Title("Notes from the Lower Meadow", "Jorunn Hesk", pages=254, year=2016, covered=False),
]
RECORDED = [
    Recording("The Tidal Clock", "Marit Osvald", "Solveig Brae", year=2015),
    Recording("The Harbourmaster's Cat", "Owen Tarrant", "Percy Lumb", year=2023),
    Recording("The Tidekeeper's Supper", "Ada Lindqvist", "Hedda Moen", series="Coast Songs", number=3, year=2026),
    Recording("Winter Wheat, Summer Thunder", "Ilse Varga", "Klara Winter", year=2019),
]
