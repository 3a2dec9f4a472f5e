// Lets the links of the guide lead to its other pages: the engine lets no page go there by itself.
(() => {
    'use strict';
    // Another page may have come meanwhile.
    if (location.protocol !== 'orvane:')
        return;
    const follow = event => {
        const link = event.target.closest('a[href]');
        if (!link || event.button > 1)
            return;
        event.preventDefault();
        console.debug('%MARK%' + JSON.stringify(['chosen', true, link.getAttribute('href')]));
    };
    document.addEventListener('click', follow);
    document.addEventListener('auxclick', follow);
})();
