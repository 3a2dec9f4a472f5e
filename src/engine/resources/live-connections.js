// Runs first in every frame, in the page's own world. The engine does not tell a stream of events
// from any other request, and tells nothing of connections between pages; this tells that the page
// has opened one, by which it keeps itself up to date. The page sees its own classes, which do what
// they did.
(() => {
    'use strict';
    const channel = visualViewport;
    if (!channel)
        return;
    const send = channel.dispatchEvent.bind(channel);
    const Message = CustomEvent;
    const construct = Reflect.construct;
    const told = Connection => {
        const Told = new Proxy(Connection, {
            construct: (target, given, made) => {
                const connection = construct(target, given, made === Told ? target : made);
                send(new Message('orvane-live'));
                return connection;
            }
        });
        Object.defineProperty(Connection.prototype, 'constructor', {value: Told, writable: true,
            enumerable: false, configurable: true});
        return Told;
    };
    const known = new Map;
    // One of them has two names.
    for (const name of ['EventSource', 'RTCPeerConnection', 'webkitRTCPeerConnection',
        'WebTransport']) {
        const Connection = window[name];
        if (typeof Connection !== 'function')
            continue;
        if (!known.has(Connection))
            known.set(Connection, told(Connection));
        Object.defineProperty(window, name, {value: known.get(Connection), writable: true,
            enumerable: false, configurable: true});
    }
})();
