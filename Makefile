# The two entry points of a fresh checkout: `make demo` and `make test`.
JOBS ?= $(shell nproc)
DEMO_INPUT ?= examples/logo.png

.PHONY: demo test bootstrap release asan bench clean

demo: bootstrap release
	./build/release/cli/rastermill convert $(DEMO_INPUT) -o -
	QT_QPA_PLATFORM=offscreen ./build/release/gui/rastermill-gui --screenshot build/demo-window.png $(DEMO_INPUT)
	@echo "The desktop program's window with $(DEMO_INPUT): build/demo-window.png"

test: bootstrap asan
	cd build/asan && ASAN_OPTIONS=detect_leaks=1 ctest --output-on-failure -j $(JOBS)
	./scripts/run-fuzz

bootstrap:
	./scripts/bootstrap

release:
	cmake --preset release >/dev/null
	cmake --build build/release -j $(JOBS)

asan:
	cmake --preset asan >/dev/null
	cmake --build build/asan -j $(JOBS)

bench: bootstrap
	cmake --preset dev -DCMAKE_BUILD_TYPE=Release -B build/bench >/dev/null
	cmake --build build/bench -j $(JOBS) --target rm_bench rm_gui_bench
	./build/bench/bench/rm_bench
	QT_QPA_PLATFORM=offscreen ./build/bench/bench/rm_gui_bench
	./scripts/bench-process --program build/bench/cli/rastermill

clean:
	rm -rf build
