"""The world around a run of the program: a reader's files, feeds, and stand-ins for the
outside services. The tests of the whole program live in it, and so does the demo."""

from .audio_application import OwnedAudiobook, write_audio_library
from .catalogues import AudioTitle, CatalogueBook
from .feed import FeedBook, feed
from .home import Home
from .older_library import OldAudiobook, OldBook, write_credentials, write_older_library
from .pictures import picture
from .stand_in import ALL_SHELVES, Answer, StandIn, page, redirect

__all__ = [
    "ALL_SHELVES", "Answer", "AudioTitle", "CatalogueBook", "FeedBook", "Home", "OldAudiobook", "OldBook", "OwnedAudiobook",
    "StandIn", "feed", "page", "picture", "redirect", "write_audio_library", "write_credentials", "write_older_library",
]
