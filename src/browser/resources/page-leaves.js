// Runs in a page that another address will be shown in, as if it were a new one: nothing of the
// page is left in sight or in the storage of its tab.
(() => {
    'use strict';
    const hiding = new CSSStyleSheet();
    hiding.replaceSync(':root { display: none !important; }');
    document.adoptedStyleSheets = [hiding];
    window.name = '';
    sessionStorage.clear();
})();
