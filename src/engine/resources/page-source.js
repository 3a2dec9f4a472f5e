// Reads the bytes of the document's address as they came, from the engine's cache where it has
// them, and keeps the answer's status and them, as a data: URL, until the program collects both;
// nothing when there are none.
(async () => {
    'use strict';
    const readAsUrl = (blob) => new Promise((resolve, reject) => {
        const reader = new FileReader();
        reader.onload = () => resolve(reader.result);
        reader.onerror = reject;
        reader.readAsDataURL(blob);
    });
    let source = [];
    try {
        // Scripts may have given the document another address since it came.
        const address = performance.getEntriesByType('navigation')[0]?.name ?? location.href;
        const answer = await fetch(address.replace(/#.*/s, ''), {
            cache: '%CACHE%', mode: 'same-origin', redirect: 'error'
        });
        const bytes = await answer.blob();
        source = [answer.status, bytes.size > 0 ? await readAsUrl(bytes) : 'data:,'];
    } catch {
        // The program does with the markup, then.
    }
    globalThis.orvaneSource%NUMBER% = source;
    console.debug('%MARK%' + JSON.stringify(['source', window === window.top, %NUMBER%]));
})();
