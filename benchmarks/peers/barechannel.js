new QWebChannel(qt.webChannelTransport, (channel) => {
    window.echo = (text) => new Promise((resolve) => channel.objects.echo.echo(text, resolve));
});
