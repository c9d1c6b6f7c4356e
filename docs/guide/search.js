// SPDX-License-Identifier: GPL-3.0-or-later
// The guide's search, which needs no server: the sections that hold every word that was typed.

// The part of the page from each heading to the next.
function sectionsOf(blocks) {
    const sections = [];
    for (const block of blocks) {
        if (/^H[1-6]$/.test(block.tagName)) {
            sections.push({ id: block.id, title: block.textContent, text: "" });
        }
        if (sections.length > 0) {
            sections[sections.length - 1].text += " " + block.textContent.toLowerCase();
        }
    }
    return sections;
}

// Those that hold all of the words, in part or whole; those with them in their titles come first.
function sectionsWith(sections, words) {
    const wanted = words.toLowerCase().split(/\s+/).filter(word => word !== "");
    const holds = text => wanted.every(word => text.includes(word));
    const found = wanted.length === 0 ? [] : sections.filter(section => holds(section.text));
    const titled = section => holds(section.title.toLowerCase());
    return [...found.filter(titled), ...found.filter(section => !titled(section))];
}

function linkTo(section) {
    const item = document.createElement("li");
    const link = item.appendChild(document.createElement("a"));
    link.href = "#" + section.id;
    link.textContent = section.title;
    return item;
}

if (typeof document !== "undefined") {
    const sections = sectionsOf(document.querySelector("main").children);
    const field = document.querySelector("#search input");
    const contents = document.querySelector("#contents");
    const found = document.querySelector("#found");
    field.addEventListener("input", () => {
        const hits = sectionsWith(sections, field.value);
        contents.hidden = field.value.trim() !== "";
        found.replaceChildren(...hits.map(linkTo));
        document.querySelector("#none").hidden = !contents.hidden || hits.length > 0;
    });
    document.querySelector("#search").hidden = false;
}
