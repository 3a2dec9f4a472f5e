// The text of a page that the engine made to show one: a file of text, or markup that is no page,
// which it keeps aside while it shows the tree.
(() => {
    'use strict';
    const markup = (nodes) =>
        Array.from(nodes, (node) => new XMLSerializer().serializeToString(node)).join('');
    const kept = document.getElementById('webkit-xml-viewer-source-xml');
    if (kept)
        return markup(kept.childNodes);
    return /xml/.test(document.contentType) ? markup(document.childNodes)
                                            : document.body?.textContent;
})();
