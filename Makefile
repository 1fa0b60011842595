# Every target does its own set-up: missing Debian packages are installed by scripts/install-packages.
.PHONY: build desktop install package test demo bench sanitize fuzz mutate format lint clean

RELEASE = build/release

build:
	scripts/install-packages build
	cmake --preset release -DQM_TESTS=OFF -DQM_BENCH=OFF -DQM_DESKTOP=OFF
	cmake --build --preset release

# The desktop program beside the command line.
desktop:
	scripts/install-packages desktop
	cmake --preset release -DQM_TESTS=OFF -DQM_BENCH=OFF -DQM_DESKTOP=ON
	cmake --build --preset release

# Programs, guide, man pages, completion and desktop entry below PREFIX.
PREFIX ?= /usr/local
install: desktop
	cmake --install $(RELEASE) --prefix $(DESTDIR)$(PREFIX)

# A Debian package in build/release.
package: desktop
	cd $(RELEASE) && cpack

test:
	scripts/install-packages test
	cmake --preset release -DQM_TESTS=ON -DQM_BENCH=ON -DQM_DESKTOP=ON
	cmake --build --preset release
	ctest --preset release

demo:
	scripts/install-packages build
	cmake --preset release -DQM_TESTS=OFF -DQM_BENCH=OFF -DQM_DESKTOP=OFF
	cmake --build --preset release
	scripts/demo $(RELEASE)

bench:
	scripts/install-packages test
	cmake --preset release -DQM_TESTS=ON -DQM_BENCH=ON -DQM_DESKTOP=ON
	cmake --build --preset release
	bench/run $(RELEASE)

# The whole suite under the address and undefined-behaviour sanitizers.
sanitize:
	scripts/install-packages test
	cmake --preset asan -DQM_DESKTOP=ON
	cmake --build --preset asan
	ctest --preset asan

# Each reader of foreign bytes for a minute under the fuzzer.
fuzz:
	scripts/install-packages fuzz
	cmake --preset fuzz
	cmake --build --preset fuzz
	scripts/fuzz build/fuzz 60

# Small changes of the sources that the tests have to notice: 40 draws from SEED.
SEED ?= 1
DRAWS ?= 40
mutate:
	scripts/install-packages test
	cmake --preset mutate
	tools/mutate build/mutate --seed $(SEED) --draws $(DRAWS)

format:
	scripts/install-packages lint
	git ls-files '*.h' '*.cpp' | xargs clang-format -i

lint:
	scripts/install-packages lint
	.ci/arrows
	git ls-files '*.h' '*.cpp' | xargs clang-format --dry-run -Werror

clean:
	rm -rf build out
