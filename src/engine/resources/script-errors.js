// Tells the column of an uncaught error, which the engine's own report leaves out, to our script in
// the frame's other world. It runs in the page's world, the only one where such errors can be heard,
// and what runs there the page may read, replace and imitate: it holds no secret, and what it tells
// counts for no more than the page's own word.
(() => {
    'use strict';
    const channel = visualViewport;
    const send = channel.dispatchEvent.bind(channel);
    const Message = CustomEvent;
    addEventListener('error', (event) => {
        if (event.colno > 0)
            send(new Message('orvane-column', {detail: event.colno}));
    }, true);
})();
