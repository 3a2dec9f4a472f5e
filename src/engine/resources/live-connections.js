// Runs first in every frame, in the page's own world. The engine does not tell a stream of events
// from any other request; this tells that the page has opened one, by which it keeps itself up to
// date. The page sees its own class, which does what it did.
(() => {
    'use strict';
    const Stream = window.EventSource;
    const channel = visualViewport;
    if (!Stream || !channel)
        return;
    const send = channel.dispatchEvent.bind(channel);
    const Message = CustomEvent;
    const construct = Reflect.construct;
    const Told = new Proxy(Stream, {
        construct: (target, given, made) => {
            const stream = construct(target, given, made === Told ? target : made);
            send(new Message('orvane-live'));
            return stream;
        }
    });
    Object.defineProperty(Stream.prototype, 'constructor', {value: Told, writable: true,
        enumerable: false, configurable: true});
    Object.defineProperty(window, 'EventSource', {value: Told, writable: true, enumerable: false,
        configurable: true});
})();
