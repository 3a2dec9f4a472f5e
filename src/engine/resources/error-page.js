// Replaces what the engine shows at an address it could not open.
(() => {
    'use strict';
    // Another page may have come meanwhile.
    if (location.protocol !== 'chrome-error:')
        return;
    const text = %TEXTS%;
    const make = (name, content, parent) => {
        const element = document.createElement(name);
        element.textContent = content;
        parent.appendChild(element);
        return element;
    };
    const root = document.documentElement;
    root.replaceChildren();
    root.lang = text.language;
    document.adoptedStyleSheets = [];
    const head = make('head', '', root);
    make('title', text.title, head);
    make('style', `
        :root { color-scheme: ${text.scheme}; background: Canvas; }
        body { font: 15px/1.5 sans-serif; max-width: 38em; margin: 4em auto; padding: 0 1.5em; }
        h1 { font-size: 1.4em; }
        code { overflow-wrap: anywhere; }
    `, head);
    const body = make('body', '', root);
    const main = make('main', '', body);
    make('h1', text.heading, main);
    make('p', text.reason, main);
    make('code', text.address, make('p', '', main));
    const button = make('button', text.again, make('p', '', main));
    button.id = 'tryAgain';
    button.addEventListener('click', () => console.debug('%MARK%' + JSON.stringify(['retry', true, ''])));
})();
