// Tells the column of an uncaught error, which the engine's own report leaves out. It runs in the
// page's world, where errors can be heard, and first: what it uses is its own from then on, so
// that the page never sees the mark.
(() => {
    'use strict';
    const tell = console.debug.bind(console);
    addEventListener('error', (event) => {
        if (event.colno > 0)
            tell('%MARK%["column",true,' + event.colno + ']');
    }, true);
})();
