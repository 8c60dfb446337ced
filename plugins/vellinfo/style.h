// How the page looks: light or dark as the reader's screen, on a phone, on paper.
#pragma once

namespace velloria::plugins::vellinfo {

inline constexpr char kStyle[] = R"css(
:root {
  color-scheme: light dark;
  --back: #f5f6f4; --card: #ffffff; --text: #1d2328; --quiet: #545d66; --line: #d0d5d9; --link: #0b5394;
  --column: #2c6e9e;
  --p0: #2c6e9e; --p1: #b5541c; --p2: #38783c; --p3: #86499a; --p4: #83660a; --p5: #b0355a; --p6: #1b7575; --p7: #66707a;
  --h0: #eceeed; --h1: #a7d3b6; --h2: #5fae80; --h3: #2b7a50; --h4: #0f4529; --edge: #8a949c;
}
@media (prefers-color-scheme: dark) {
  :root {
    --back: #14171a; --card: #1d2226; --text: #e6e9eb; --quiet: #a9b2ba; --line: #3a424a; --link: #8cc4f2;
    --column: #6cb2e8;
    --p0: #6cb2e8; --p1: #f0975a; --p2: #7cc47f; --p3: #cf9ad6; --p4: #d9b84a; --p5: #f08fac; --p6: #5fc9c9; --p7: #a3adba;
    --h0: #252b30; --h1: #1d4d35; --h2: #2f7a52; --h3: #55b07e; --h4: #a4ecc4; --edge: #76818b;
  }
}
* { box-sizing: border-box; }
html { -webkit-text-size-adjust: 100%; text-size-adjust: 100%; }
body {
  margin: 0 auto; padding: 1rem; max-width: 64rem; background: var(--back); color: var(--text);
  font: 1rem/1.7 "Noto Sans CJK JP", "Noto Sans JP", "Hiragino Sans", "Yu Gothic UI", Meiryo, sans-serif;
  overflow-wrap: anywhere;
}
h1 { font-size: 1.5rem; line-height: 1.3; margin: .3rem 0; }
h2 { font-size: 1.2rem; line-height: 1.4; margin: 0 0 .4rem; }
h3 { font-size: 1rem; margin: 1.2rem 0 .3rem; }
p { margin: .3rem 0; }
a { color: var(--link); }
a:focus-visible, summary:focus-visible, .scroll:focus-visible { outline: 2px solid var(--link); outline-offset: 2px; }
.quiet, .counted { color: var(--quiet); font-size: .875rem; }
nav ul { display: flex; flex-wrap: wrap; gap: .2rem 1rem; padding: 0; margin: .5rem 0; list-style: none; }
nav a { display: inline-block; padding: .2rem 0; }
section { background: var(--card); border: 1px solid var(--line); border-radius: .5rem; padding: 1rem; margin: 1rem 0; }
.pair { display: grid; grid-template-columns: repeat(auto-fit, minmax(min(100%, 20rem), 1fr)); gap: .5rem 2rem; }
.pair > div { min-width: 0; }
.tiles { display: grid; grid-template-columns: repeat(auto-fit, minmax(min(100%, 9rem), 1fr)); gap: .5rem 1rem; margin: 0; }
.tiles dt { color: var(--quiet); font-size: .875rem; }
.tiles dd { margin: 0; font-size: 1.25rem; line-height: 1.4; font-variant-numeric: tabular-nums; }
svg { display: block; width: 100%; height: auto; max-width: 34rem; }
svg text { fill: var(--text); font-size: 11px; }
svg .beside { text-anchor: end; }
svg .below { text-anchor: middle; font-size: 10px; }
svg .above { font-size: 10px; }
svg .line { stroke: var(--line); stroke-width: 1; }
svg .column { fill: var(--column); }
.p0 { fill: var(--p0); } .p1 { fill: var(--p1); } .p2 { fill: var(--p2); } .p3 { fill: var(--p3); }
.p4 { fill: var(--p4); } .p5 { fill: var(--p5); } .p6 { fill: var(--p6); } .p7 { fill: var(--p7); }
svg .part { stroke: var(--card); stroke-width: .6; }
svg .heat { stroke: var(--edge); stroke-width: .5; }
.h0 { fill: var(--h0); } .h1 { fill: var(--h1); } .h2 { fill: var(--h2); } .h3 { fill: var(--h3); } .h4 { fill: var(--h4); }
.legend { display: flex; flex-wrap: wrap; gap: .1rem .9rem; padding: 0; margin: .2rem 0; list-style: none; font-size: .875rem; }
.legend li { display: flex; align-items: center; gap: .3rem; }
.legend svg { width: .8rem; flex: none; }
details { margin: .3rem 0 .6rem; }
summary { cursor: pointer; color: var(--link); font-size: .875rem; padding: .2rem 0; }
.scroll { overflow-x: auto; max-width: 100%; }
table { border-collapse: collapse; font-size: .875rem; line-height: 1.5; font-variant-numeric: tabular-nums; }
caption { text-align: left; color: var(--quiet); }
th, td { border: 1px solid var(--line); padding: .15rem .5rem; text-align: right; white-space: nowrap; }
th { font-weight: 600; }
tbody th, tfoot th { text-align: left; }
tfoot th, tfoot td { border-top: 2px solid var(--quiet); font-weight: 600; }
table.texts td, table.texts th { text-align: left; white-space: normal; }
table.texts th { white-space: nowrap; }
.private { border: 1px solid currentColor; border-radius: .2rem; padding: 0 .3rem; font-size: .75rem; white-space: nowrap; }
@media (max-width: 30rem) {
  body { padding: .5rem; }
  section { padding: .7rem; }
}
@page { margin: 12mm; }
@media print {
  :root {
    color-scheme: light;
    --back: #fff; --card: #fff; --text: #000; --quiet: #444; --line: #bbb; --link: #000; --column: #2c6e9e;
    --p0: #2c6e9e; --p1: #b5541c; --p2: #38783c; --p3: #86499a; --p4: #83660a; --p5: #b0355a; --p6: #1b7575; --p7: #66707a;
    --h0: #fff; --h1: #a7d3b6; --h2: #5fae80; --h3: #2b7a50; --h4: #0f4529; --edge: #8a949c;
  }
  body { max-width: none; padding: 0; font-size: 10pt; }
  svg, .legend { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
  nav, details:not([open]), summary { display: none; }
  section { border: 0; padding: 0; margin: 0 0 1.2rem; }
  h2, h3, p.quiet { break-after: avoid; }
  svg, .pair > div, tr, table.texts { break-inside: avoid; }
  .scroll { overflow: visible; }
}
)css";

} // namespace velloria::plugins::vellinfo
