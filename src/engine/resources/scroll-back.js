// Scrolls a page that has come back to where it was, as soon as it is long enough for that; not
// against the user, and not for ever.
(() => {
    'use strict';
    const [x, y] = [%PLACE%];
    const longestMs = 10000;
    const begun = performance.now();
    let isOver = false;
    for (const kind of ['wheel', 'keydown', 'pointerdown', 'touchstart'])
        addEventListener(kind, (event) => { isOver ||= event.isTrusted; },
            { capture: true, passive: true });
    const isThere = () => Math.abs(scrollX - x) <= 1 && Math.abs(scrollY - y) <= 1;
    const step = () => {
        if (isOver || performance.now() - begun > longestMs)
            return;
        if (!isThere())
            scrollTo({ left: x, top: y, behavior: 'instant' });
        if (document.readyState !== 'complete' || !isThere())
            setTimeout(step, 30);
    };
    step();
})();
