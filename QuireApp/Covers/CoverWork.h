// Where covers are decoded: a few threads of low priority that nothing waits
// for, so that scrolling never meets a decoder.
//
// Thread: start() and finish() on the interface thread.

#pragma once

#include "QuireApp/Covers/CoverDrawing.h"
#include "QuireApp/Covers/CoverSource.h"

#include <QImage>

#include <functional>
#include <stop_token>

namespace quire::CoverWork {

// The key under which the finished picture is kept in ArtworkImageCache.
QString finishedKey(const CoverSource &source, const CoverDrawing::Request &request);

// Decodes and draws a cover in the background, keeps the result, and calls
// `done` on the interface thread; not when `stop` was requested before. source:
// a cover that is present. The picture is null when the bytes are none.
void start(const CoverSource &source, const CoverDrawing::Request &request, std::stop_token stop,
    std::function<void(const QImage &)> done);

// Runs any other work on covers there.
void startTask(std::function<void()> task);

// Drops what waits and returns when what runs has ended. Before the
// application object dies.
void finish();

} // namespace quire::CoverWork
