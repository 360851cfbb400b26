"""The tour of the search on the audio tab: the reader's own audiobooks, and below them the catalogue's."""

import unittest

from quire_driver import TourCase
from quire_driver.tour import MENU_BAR, sidebar
from quire_world import Answer, AudioTitle, OldAudiobook

CONTROLS = """
    heading 'Read'
    label '{count}'
    push button 'Add Audiobook'
    combo box 'Sort library': Recent
"""
CATALOGUE = "heading 'Audible'\nlabel 'Available to Add'"
FOUND = """
    list item 'Tidewater'
      label 'Tidewater'
      label 'Ada Lindqvist'
      label 'Piet Aalders'
      label '2019'
      push button 'Add as Read'
      push button 'Add as Listening'
"""
TIDE_TABLES = "push button 'View details for Tide Tables'"
OTHERS = "push button 'View details for Salt'"


class SearchTour(TourCase):
    def test_the_search_of_the_audio_tab_in_all_its_states(self):
        self.home.write_settings(selectedTab="audio", automaticGoodreadsSync="0")
        self.home.write_audiobooks(OldAudiobook("A1", "Tide Tables"), OldAudiobook("A2", "Salt"))
        self.services.audio_titles = [AudioTitle("B1", "Tidewater")]
        program = self.start()
        frame = program.find("Quire", role="frame")

        def shows(search, count, *content):
            self.shows(frame, sidebar("Audio", search=search), CONTROLS.format(count=count), *content, MENU_BAR)

        shows("", "2 titles", OTHERS, TIDE_TABLES)
        program.find("Search library & Audible", role="text").click()
        program.type("t")
        shows("t", "2 titles", OTHERS, TIDE_TABLES)
        program.keys("ctrl+a")
        program.type("  t ")  # blanks do not count
        shows("  t ", "2 titles", OTHERS, TIDE_TABLES)
        asked = [request for request in self.services.requests if request.path == "/1.0/catalog/products"]
        self.assertEqual(asked, [])

        program.keys("ctrl+a")
        program.type(" tide")
        shows(" tide", "1 title", "heading 'In Your Library'\nlabel '1'", TIDE_TABLES, CATALOGUE, FOUND)
        asked = [request.query["keywords"] for request in self.services.requests if request.path == "/1.0/catalog/products"]
        self.assertEqual(asked[-1], "tide")

        self.services.files["/1.0/catalog/products"] = Answer(delay=120)
        program.type("w")
        nothing = "heading 'In Your Library'\nlabel '0'", "label 'No matching titles in your library.'", CATALOGUE
        shows(" tidew", "0 titles", *nothing, "label 'Searching Audible…'")
        self.services.files["/1.0/catalog/products"] = Answer(b"Back soon", status=503, type="text/plain")
        program.type("a")
        program.wait_for_text("Audible search failed: ")
        del self.services.files["/1.0/catalog/products"]
        program.type("x")
        shows(" tidewax", "0 titles", *nothing, "label 'No matching titles found on Audible.'")
        program.keys("BackSpace")
        shows(" tidewa", "0 titles", *nothing, FOUND)

        program.find("Tidewater", role="list item").find("Add as Listening").click()
        program.wait_for_text("Audio title added")
        program.wait_for_cards("Tidewater")
        self.assertTrue(program.has("Currently Listening", role="heading"))
        self.assertEqual(program.find("Search library & Audible", role="text").text, "")
        self.assertEqual(self.home.value("SELECT status FROM audible_books WHERE asin = 'B1'"), "reading")


    def test_a_search_in_the_smallest_window_leaves_the_head_in_sight(self):
        self.home.write_settings(selectedTab="audio", automaticGoodreadsSync="0")
        self.home.write_audiobooks(*[OldAudiobook(f"A{n}", f"Tide {n}") for n in range(12)])
        program = self.start()
        program.resize(920, 700)
        top = program.find("Read", role="heading").frame[1]
        program.find("Search library & Audible", role="text").click()
        program.type("tide")
        program.find("In Your Library", role="heading")
        self.eventually(lambda: program.find("Read", role="heading").frame[1] == top, 
                        f"the head is at {program.find('Read', role='heading').frame[1]} and was at {top}")


if __name__ == "__main__":
    unittest.main()
