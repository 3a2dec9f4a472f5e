// Scrolls a page that has come back to where it was, as soon as it is long enough for that; not
// against the user, and not for ever. Tells when it is in sight there.
(() => {
    'use strict';
    const place = %PLACE%;
    const longestMs = 10000;
    const begun = performance.now();
    let isOver = false;
    for (const kind of ['wheel', 'keydown', 'pointerdown', 'touchstart'])
        addEventListener(kind, (event) => { isOver ||= event.isTrusted; },
            { capture: true, passive: true });
    const isThere = () => !place
        || (Math.abs(scrollX - place[0]) <= 1 && Math.abs(scrollY - place[1]) <= 1);
    let isTold = false;
    const tell = () => {
        if (isTold)
            return;
        isTold = true;
        requestAnimationFrame(() => requestAnimationFrame(() =>
            console.debug('%MARK%' + JSON.stringify(['painted', true, '']))));
    };
    const step = () => {
        if (isOver || performance.now() - begun > longestMs) {
            tell();
            return;
        }
        if (!isThere())
            scrollTo({ left: place[0], top: place[1], behavior: 'instant' });
        if (document.readyState === 'complete' || (place && isThere()))
            tell();
        if (document.readyState !== 'complete' || !isThere())
            setTimeout(step, 30);
    };
    step();
})();
