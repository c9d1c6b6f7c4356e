// SPDX-License-Identifier: GPL-3.0-or-later
// The guide's search, without a page: run by node with the path of search.js.
const { deepStrictEqual } = require("node:assert");
const { readFileSync } = require("node:fs");
const { runInThisContext } = require("node:vm");

runInThisContext(readFileSync(process.argv[2], "utf8"));

const block = (tagName, textContent, id) => ({ tagName, textContent, id });
const sections = sectionsOf([
    block("P", "before any heading"),
    block("H2", "Two echoes", "two-echoes"),
    block("P", "A Note comes again."),
    block("H3", "Pedals", "pedals"),
    block("P", "An echo of the Pedal"),
    block("UL", "and its note"),
]);
const found = words => sectionsWith(sections, words).map(section => section.id);

deepStrictEqual(found("note"), ["two-echoes", "pedals"], "what is looked for stands anywhere in a section");
deepStrictEqual(found("ECHO"), ["two-echoes", "pedals"], "large letters are small ones; titles come first");
deepStrictEqual(found("pedal"), ["pedals"]);
deepStrictEqual(found("pedal echo"), ["pedals"], "a section holds all of the words");
deepStrictEqual(found("again pedal"), [], "and not each in another one");
deepStrictEqual(found("before"), [], "what stands before all headings has no place to go to");
deepStrictEqual(found("  "), [], "nothing is looked for");
