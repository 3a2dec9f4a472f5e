// Runs first in a page, in the page's own world. The engine reckons what a script asks about the
// place and size of its window with the whole frame of the program; this tells what was asked, to be
// reckoned with the window that holds the page. As with the engine's own functions, only a page that
// another one opened is heard.
(() => {
    'use strict';
    // Unlike the document and the window it keeps its listeners when a script writes the page anew.
    const channel = visualViewport;
    const send = channel.dispatchEvent.bind(channel);
    const Message = CustomEvent;
    const ask = (name, given) => {
        if (given.length < 2)
            throw new TypeError(`Failed to execute '${name}' on 'Window': 2 arguments required, `
                + `but only ${given.length} present.`);
        if (window.opener)
            send(new Message('orvane-place', {detail: `${name},${given[0] | 0},${given[1] | 0}`}));
    };
    window.moveTo = function moveTo(x, y) { ask('moveTo', arguments); };
    window.moveBy = function moveBy(x, y) { ask('moveBy', arguments); };
    window.resizeTo = function resizeTo(x, y) { ask('resizeTo', arguments); };
    window.resizeBy = function resizeBy(x, y) { ask('resizeBy', arguments); };
})();
