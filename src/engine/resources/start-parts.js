// Puts what the program offers at the start into its own start page, or below the error of a home page
// that could not be reached.
(() => {
    'use strict';
    // Another page may have come meanwhile.
    if (!['orvane:', 'chrome-error:'].includes(location.protocol))
        return;
    const parts = %PARTS%;
    const main = document.querySelector('main');
    if (!main)
        return;
    const make = (name, content, parent) => {
        const element = document.createElement(name);
        element.textContent = content;
        parent.appendChild(element);
        return element;
    };
    const tell = (kind, value) =>
        console.debug('%MARK%' + JSON.stringify(['chosen', true, JSON.stringify([kind, value])]));

    const addSearch = (search, parent) => {
        const form = make('form', '', parent);
        form.setAttribute('role', 'search');
        const field = make('input', '', form);
        field.type = 'search';
        field.id = 'startSearch';
        field.setAttribute('aria-label', search.label);
        field.placeholder = search.label;
        make('button', search.button, form);
        form.addEventListener('submit', event => {
            event.preventDefault();
            if (field.value.trim() !== '')
                tell('search', field.value);
        });
        return field;
    };
    // One that the engine may follow by itself has its address, for all that else is done with links.
    const addEntry = (kind, entry, list) => {
        const link = make('a', entry.text, make('li', '', list));
        link.href = entry.address || '#';
        link.title = entry.hint;
        link.addEventListener('click', event => {
            if (entry.address && (event.ctrlKey || event.shiftKey))
                return;
            event.preventDefault();
            tell(kind, entry.value);
        });
    };
    const addGroup = (group, parent) => {
        const section = make('section', '', parent);
        make('h2', group.title, section);
        const list = make('ul', '', section);
        for (const entry of group.entries)
            addEntry(group.kind, entry, list);
    };

    document.getElementById('startParts')?.remove();
    const root = make('div', '', main);
    root.id = 'startParts';
    make('style', `
        :root { color-scheme: ${parts.scheme}; background: Canvas; }
        body { font: 15px/1.5 sans-serif; margin: 0; }
        main { max-width: 60em; margin: 3em auto; padding: 0 1.5em; }
        #startParts form { display: flex; gap: .5em; max-width: 38em; margin: 0 0 2em; }
        #startParts input { flex: 1; min-width: 0; font: inherit; padding: .35em .6em; }
        #startParts button { font: inherit; padding: .35em 1em; }
        #startGroups { display: grid; gap: 0 2em;
            grid-template-columns: repeat(auto-fit, minmax(min(16em, 100%), 1fr)); }
        #startParts h2 { font-size: 1.1em; margin: 1em 0 .4em; }
        #startParts ul { list-style: none; margin: 0; padding: 0; }
        #startParts li { overflow: hidden; text-overflow: ellipsis; white-space: nowrap; }
        #startParts a { color: LinkText; text-decoration: none; }
        #startParts a:hover, #startParts a:focus-visible { text-decoration: underline; }
    `, root);
    if (parts.introduction)
        make('p', parts.introduction, root);
    const field = parts.search && addSearch(parts.search, root);
    const groups = make('div', '', root);
    groups.id = 'startGroups';
    for (const group of parts.groups)
        addGroup(group, groups);
    if (!parts.search && parts.groups.length === 0)
        make('p', parts.nothing, root);
    if (location.protocol === 'orvane:') {
        document.documentElement.lang = parts.language;
        document.title = parts.title;
        field?.focus();
    }
})();
