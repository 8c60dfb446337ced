# Serves a tDiary as a web server with CGI does: server.rb FOLDER PORT [USER PASSWORD]. With a user its own pages ask for
# HTTP Basic. FOLDER holds tdiary.conf, index.rb, update.rb and the folder theme.
require 'shellwords'
require 'webrick'

folder, port, user, password = ARGV
# A CGI script gets an environment of its own, in which an unpacked Ruby finds nothing.
environment = %w[LANG LD_LIBRARY_PATH RUBYLIB GEM_PATH TDIARY_DATA].map { |name| "#{name}=#{ENV[name]}" }
server = WEBrick::HTTPServer.new(
  BindAddress: '127.0.0.1', Port: port.to_i, CGIInterpreter: Shellwords.join(['env', *environment, RbConfig.ruby]),
  AccessLog: [[$stderr, '%m %U %s']], Logger: WEBrick::Log.new($stderr, WEBrick::Log::WARN))

class Guarded < WEBrick::HTTPServlet::CGIHandler
  def initialize(server, script, check)
    super(server, script)
    @check = check
  end

  def service(request, response)
    @check&.call(request, response)
    super
  end
end

check = user && proc do |request, response|
  WEBrick::HTTPAuth.basic_auth(request, response, 'tDiary') do |name, word|
    [name, word].map { |text| text.to_s.dup.force_encoding('UTF-8') } == [user, password]
  end
end
server.mount('/update.rb', Guarded, "#{folder}/update.rb", check)
['/index.rb', '/'].each { |path| server.mount(path, WEBrick::HTTPServlet::CGIHandler, "#{folder}/index.rb") }
server.mount('/theme', WEBrick::HTTPServlet::FileHandler, "#{folder}/theme")
trap('TERM') { server.shutdown }
server.start
