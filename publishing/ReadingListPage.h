// The parts of the published page that are the same for every library. They are
// published byte for byte, line feeds and blanks included.

#pragma once

#include <QStringView>

namespace quire::ReadingListPage {

// Up to the moment of publication. The style is one line.
inline constexpr QStringView head(
    // clang-format off
    uR"html(<!doctype html>
<html lang="en">
<head>
  <meta charset="utf-8">
  <meta name="viewport" content="width=device-width, initial-scale=1">
  <title>Corin's Reading List</title>
  <style>
  :root{color-scheme:light})html"
    uR"(*{box-sizing:border-box})"
    uR"(body{font-family:-apple-system,BlinkMacSystemFont,"Segoe UI",sans-serif;line-height:1.58;color:#211f1d;background:#faf8f3;max-width:960px;margin:0 auto;padding:38px 28px})"
    uR"(a{color:#315c9b})"
    uR"(h1{font-size:36px;margin:0 0 4px})"
    uR"(.updated{color:#746d65;margin:0 0 26px})"
    uR"(.blurb{background:#eaf0f7;border-radius:14px;padding:16px 18px})"
    uR"(.rating-system{background:white;border:1px solid #e5ded5;border-radius:14px;padding:20px;margin:22px 0})"
    uR"(.rating-system h2{border:0;margin-top:0})"
    uR"(.rating-system li{margin:7px 0})"
    uR"(.stats{display:grid;grid-template-columns:repeat(auto-fit,minmax(130px,1fr));gap:12px;margin:22px 0})"
    uR"(.stat{background:#f2e8e9;border-radius:14px;padding:16px})"
    uR"(.stat-value{font-size:25px;font-weight:750})"
    uR"(.stat-label{font-size:12px;color:#746d65;text-transform:uppercase;letter-spacing:.04em})"
    uR"(.quick-nav{position:sticky;top:0;background:rgba(250,248,243,.94);backdrop-filter:blur(10px);padding:12px 0})"
    uR"(.quick-nav a{display:inline-block;background:white;border:1px solid #ddd4ca;border-radius:999px;padding:7px 12px;margin:0 8px 8px 0;text-decoration:none;color:#312d29})"
    uR"(h2{border-bottom:2px solid #ded5ca;padding-bottom:8px;margin-top:34px})"
    uR"(.book{background:white;border:1px solid #e8e1d9;border-radius:14px;padding:18px;margin:12px 0})"
    uR"(.book h3{margin:0 0 6px})"
    uR"(.meta,.date,.link{color:#6e665f;font-size:14px})"
    uR"(.summary{color:#403b37})"
    uR"(.rating{font-size:14px;margin-top:5px})"
    uR"(@media(max-width:600px){body{padding:24px 16px}h1{font-size:30px}})"
    uR"html(
  </style>
</head>
<body>
  <h1>Corin's Reading List</h1>
  <p class="updated">Last updated: )html"
    // clang-format on
);

// From there to the first number of the statistics.
inline constexpr QStringView ratingScale(uR"html( ET</p>
  <p class="blurb">This is a public, structured snapshot of what I have been reading and listening to.</p>
  <section class="rating-system">
    <h2>How I rate books</h2>
    <p>My scale is intentionally different from the usual five-star system: <strong>two stars still means a good, enjoyable book</strong>.</p>
    <ol>
      <li><strong>One star — Bad.</strong> I finished it, but disliked it. A DNF is worse: I reserve that for books I disliked enough that I could not finish them.</li>
      <li><strong>Two stars — Good.</strong> Enjoyable, but probably not a reread.</li>
      <li><strong>Three stars — Very good.</strong> I really enjoyed it and will probably read it again someday.</li>
      <li><strong>Four stars — Great.</strong> I loved it and will definitely reread it.</li>
      <li><strong>Five stars — Exceptional.</strong> A book I will read repeatedly and use as a reason to seek out the author's other work.</li>
    </ol>
    <p><strong>Audiobook ratings are not directly comparable to book ratings.</strong> They score both the book and the narration.</p>
  </section>
  <div class="stats">
    <div class="stat"><div class="stat-value">)html");

} // namespace quire::ReadingListPage
